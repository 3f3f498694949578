// The effects that are a shader alone: what holds for all of them, over every class, size, strength and time.

#include <algorithm>

#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

struct OnePassEffect {
    const char* name;
    bool isStill = false;           ///< the time changes nothing
    bool isIdentityAtZero = false;  ///< strength 0 gives the input back
    bool addsLight = false;         ///< may cover what is transparent
};

constexpr OnePassEffect kEffects[] = {
    {.name = "QVBlackFilmEffectMTIFilter"},
    {.name = "QVBlackFilmShakeMTIFilter"},
    {.name = "QVBlackWhiteMTIFilter", .isStill = true, .isIdentityAtZero = true},
    {.name = "QVBulgeDistortionMTIFilter", .isStill = true, .isIdentityAtZero = true},
    {.name = "QVConvexMTIFilter", .isStill = true, .isIdentityAtZero = true},
    {.name = "QVCrosshatchMTIFilter", .isStill = true},
    {.name = "QVDamageFilmMTIFilter"},
    {.name = "QVEdgeMTIFilter"},
    {.name = "QVFireMTIFilter", .addsLight = true},
    {.name = "QVFireworkMTIFilter", .addsLight = true},
    {.name = "QVFlashLightMTIFilter"},
    {.name = "QVHotlineMTIFilter"},
    {.name = "QVJPEGMTIFilter"},
    {.name = "QVRepeatScrollIFilter"},
    {.name = "QVSnowMTIFilter", .addsLight = true},
    {.name = "QVThrillEffectMTIFilter", .isIdentityAtZero = true},
    {.name = "QVTrembleEffectMTIFilter", .isIdentityAtZero = true},
    {.name = "QVWaveMTIFilter", .isIdentityAtZero = true},
};

std::unique_ptr<QVEffectMTIFilter> effect(std::string_view name, const MTIImage& input) {
    auto made = makeEffect(name);
    made->setInputImage(input);
    return made;
}

Picture frameOf(QVEffectMTIFilter& filter, float strength, double time) {
    filter.setEffectValue(strength);
    filter.setITime(time);
    return render(filter.outputImage());
}

/// Mean of red, green and blue of the rows from `top` up to `bottom`.
double brightness(const Picture& picture, int top, int bottom) {
    double sum = 0;
    for (int y = top; y < bottom; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const Pixel p = picture.at(x, y);
            sum += double(p[0] + p[1] + p[2]) / 3;
        }
    }
    return sum / double(picture.width * (bottom - top));
}
double brightness(const Picture& picture) {
    return brightness(picture, 0, picture.height);
}

TEST(OnePassEffects, GrowWithTheStrength) {
    const MTIImage input = sceneImage(128, 72);
    const Picture before = render(input);
    for (const OnePassEffect& each : kEffects) {
        SCOPED_TRACE(each.name);
        const auto filter = effect(each.name, input);
        double change[3] = {};
        for (int step = 0; step < 3; ++step) {
            for (const double time : {0.1, 0.62, 1.4, 2.45}) {
                change[step] += meanDifference(frameOf(*filter, 0.5f * float(step), time), before) / 4;
            }
        }
        EXPECT_GT(change[2], 0.012);
        EXPECT_GT(change[2], change[1]);
        EXPECT_GT(change[1], change[0]);
        if (each.isIdentityAtZero) {
            EXPECT_LT(change[0], 1e-4);
        }
    }
}

TEST(OnePassEffects, MoveWithTheTimeOrStandStill) {
    for (const OnePassEffect& each : kEffects) {
        SCOPED_TRACE(each.name);
        const auto filter = effect(each.name, sceneImage(128, 72));
        const Picture early = frameOf(*filter, 1, 0.2);
        double change = 0;
        for (const double time : {0.45, 0.9, 1.7}) change += meanDifference(frameOf(*filter, 1, time), early);
        if (each.isStill) {
            EXPECT_EQ(change, 0);
        } else {
            EXPECT_GT(change, 0.01);
        }
    }
}

TEST(OnePassEffects, OnlyLightCoversWhatIsTransparent) {
    for (const OnePassEffect& each : kEffects) {
        const auto filter = effect(each.name, plainImage(96, 54, {0, 0, 0, 0}));
        const Picture nothing{96, 54, std::vector<float>(96 * 54 * 4, 0.f)};
        double change = 0;
        for (const double time : {0.4, 1.3}) change += worstDifference(frameOf(*filter, 1, time), nothing);
        if (each.addsLight) {
            EXPECT_GT(change, 0.2) << each.name;
        } else {
            EXPECT_LT(change, 1e-6) << each.name;
        }
    }
}

TEST(OnePassEffects, FireworksOfEachLevelDiffer) {
    const auto filter = effect("QVFireworkMTIFilter", plainImage(160, 90, {0, 0, 0, 1}));
    std::vector<Picture> levels;
    for (int level = 0; level < 5; ++level) {
        filter->setLevel(level);
        levels.push_back(frameOf(*filter, 1, 1.5));
        EXPECT_GT(brightness(levels.back()), 0.01) << level;
        for (int other = 0; other < level; ++other) {
            EXPECT_GT(meanDifference(levels[std::size_t(level)], levels[std::size_t(other)]), 0.01)
                << level << " and " << other;
        }
    }
}

/// How well `later` is `earlier` moved down by `rows`: the sum of products.
double match(const Picture& earlier, const Picture& later, int rows) {
    double sum = 0;
    for (int y = std::max(0, rows); y < later.height + std::min(0, rows); ++y) {
        for (int x = 0; x < later.width; ++x)
            sum += double(later.at(x, y)[1]) * double(earlier.at(x, y - rows)[1]);
    }
    return sum;
}

TEST(OnePassEffects, SnowFallsFireRisesPicturesRoll) {
    const auto snow = effect("QVSnowMTIFilter", plainImage(200, 200, {0, 0, 0, 0}));
    const Picture flakes = frameOf(*snow, 0.3f, 2.0), fallen = frameOf(*snow, 0.3f, 2.0 + 1 / 30.);
    double down = 0, up = 0;
    for (int rows = 1; rows <= 3; ++rows) {
        down += match(flakes, fallen, rows);
        up += match(flakes, fallen, -rows);
    }
    EXPECT_GT(down, 1.1 * up);
    EXPECT_GT(brightness(frameOf(*snow, 1, 2)), 2 * brightness(flakes));

    const auto fire = effect("QVFireMTIFilter", plainImage(120, 120, {0, 0, 0, 1}));
    const Picture flames = frameOf(*fire, 0.5f, 3);
    EXPECT_GT(brightness(flames, 100, 120), 4 * brightness(flames, 20, 40));
    for (int y = 0; y < 120; ++y) {
        for (int x = 0; x < 120; ++x) {  // hotter means yellower, never blue
            const Pixel p = flames.at(x, y);
            ASSERT_GE(p[0] + 1e-5, p[1]);
            ASSERT_GE(p[1] + 1e-5, p[2]);
        }
    }

    // One strip at strength 0, a quarter of the frame a second: after 0.2 s a twentieth higher.
    const auto roll = effect("QVRepeatScrollIFilter", sceneImage(100, 100));
    const Picture before = frameOf(*roll, 0, 1.0), after = frameOf(*roll, 0, 1.2);
    for (int y = 10; y < 40; ++y) {
        for (int x = 10; x < 90; x += 7) {
            ASSERT_NEAR(after.at(x, y)[0], before.at(x, y + 5)[0], 0.06) << x << " " << y;
        }
    }
}

}  // namespace
}  // namespace qv::test
