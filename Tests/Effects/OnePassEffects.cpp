// The effects that are a shader alone: what holds for all of them, over every class, size, strength and time.

#include <gmock/gmock.h>

#include <algorithm>
#include <string>

#include "QVFilterCore/QVEffectMTIFilter.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

struct OnePassEffect {
    const char* name;
    bool isStill = false;           ///< the time changes nothing
    bool isIdentityAtZero = false;  ///< strength 0 gives the input back
    bool addsLight = false;         ///< may cover what is transparent
    bool movesPicture = false;      ///< by sampling elsewhere; its border must not show
};

constexpr OnePassEffect kEffects[] = {
    {.name = "QVBlackFilmEffectMTIFilter"},
    {.name = "QVBlackFilmShakeMTIFilter", .movesPicture = true},
    {.name = "QVBlackWhiteMTIFilter", .isStill = true, .isIdentityAtZero = true},
    {.name = "QVBulgeDistortionMTIFilter", .isStill = true, .isIdentityAtZero = true, .movesPicture = true},
    {.name = "QVConvexMTIFilter", .isStill = true, .isIdentityAtZero = true, .movesPicture = true},
    {.name = "QVCrosshatchMTIFilter", .isStill = true},
    {.name = "QVDamageFilmMTIFilter", .movesPicture = true},
    {.name = "QVEdgeMTIFilter"},
    {.name = "QVFireMTIFilter", .addsLight = true},
    {.name = "QVFireworkMTIFilter", .addsLight = true},
    {.name = "QVFlashLightMTIFilter"},
    {.name = "QVHotlineMTIFilter"},
    {.name = "QVJPEGMTIFilter", .movesPicture = true},
    {.name = "QVRepeatScrollIFilter", .movesPicture = true},
    {.name = "QVSnowMTIFilter", .addsLight = true},
    {.name = "QVThrillEffectMTIFilter", .isIdentityAtZero = true, .movesPicture = true},
    {.name = "QVTrembleEffectMTIFilter", .isIdentityAtZero = true, .movesPicture = true},
    {.name = "QVWaveMTIFilter", .isIdentityAtZero = true, .movesPicture = true},
};

/// Shapes, gradients and fine detail of many colours.
Bitmap scene(int width, int height) {
    return makeBitmap(width, height, [&](int x, int y) {
        const float u = (float(x) + 0.5f) / float(width), v = (float(y) + 0.5f) / float(height);
        const bool disc = std::hypot(u - 0.4f, v - 0.6f) < 0.22f;
        const float detail = float((x * 7 + y * 3) % 5) / 20;
        return disc ? Pixel{0.85f, 0.3f + detail, 0.15f, 1}
                    : Pixel{0.2f + 0.6f * u, 0.75f - 0.5f * v, 0.4f + detail, 1};
    });
}

/// The scene on a soft-edged disc, transparent outside.
Bitmap cutOut(int width, int height) {
    const Bitmap whole = scene(width, height);
    return makeBitmap(width, height, [&](int x, int y) {
        const std::uint8_t* p = whole.row(y) + 4 * x;
        const float away = std::hypot(float(x) / float(width) - 0.5f, float(y) / float(height) - 0.5f);
        return Pixel{float(p[0]) / 255, float(p[1]) / 255, float(p[2]) / 255,
                     std::clamp((0.45f - away) * 8, 0.f, 1.f)};
    });
}

Bitmap plain(int width, int height, Pixel color) {
    return makeBitmap(width, height, [&](int, int) { return color; });
}

std::unique_ptr<QVEffectMTIFilter> effect(std::string_view name, const Bitmap& input) {
    auto filter = createFilter(name);
    auto* asEffect = dynamic_cast<QVEffectMTIFilter*>(filter.get());
    if (!asEffect) {
        ADD_FAILURE() << name << " is not an effect of the library";
        return nullptr;
    }
    static_cast<void>(filter.release());
    asEffect->setInputImage(MTIImage::imageWithBitmap(input));
    return std::unique_ptr<QVEffectMTIFilter>(asEffect);
}

Picture frameOf(QVEffectMTIFilter& filter, float strength, double time) {
    filter.setEffectValue(strength);
    filter.setITime(time);
    return render(filter.outputImage());
}

double meanDifference(const Picture& a, const Picture& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.values.size(); ++i)
        sum += std::abs(double(a.values[i]) - double(b.values[i]));
    return sum / double(a.values.size());
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

constexpr std::pair<int, int> kSizes[] = {{96, 54}, {54, 96}, {61, 61}};
constexpr double kTimes[] = {0, 0.35, 1.2, 77.7, 1e6};

TEST(OnePassEffects, FlagsOfTheClasses) {
    for (const OnePassEffect& each : kEffects) {
        SCOPED_TRACE(each.name);
        const QVFilterClass* record = filterClassNamed(each.name);
        ASSERT_TRUE(record);
        const std::string name = each.name;
        EXPECT_EQ(record->levels(), name == "QVFireworkMTIFilter" ? 5 : 0);
        EXPECT_EQ(record->photoTimeConst(), name != "QVFireworkMTIFilter" && name != "QVJPEGMTIFilter");
        EXPECT_EQ(record->videoOnly(),
                  name == "QVTrembleEffectMTIFilter" || name == "QVThrillEffectMTIFilter");
        EXPECT_EQ(record->defaultStrength(), kDefaultEffectValue);
        EXPECT_EQ(record->fragmentFunctionDescriptor().name, name);
    }
}

TEST(OnePassEffects, StayInRangeEverywhere) {
    for (const OnePassEffect& each : kEffects) {
        const int levels = std::max(filterClassNamed(each.name)->levels(), 1);
        for (const auto& [width, height] : kSizes) {
            const auto filter = effect(each.name, cutOut(width, height));
            for (const double time : kTimes) {
                for (const float strength : {0.f, 0.5f, 1.f}) {
                    filter->setLevel(int(time * 10) % levels);
                    const Picture picture = frameOf(*filter, strength, time);
                    ASSERT_EQ(picture.width, width);
                    ASSERT_EQ(picture.height, height);
                    float lowest = 1, highest = 0, over = 0;
                    for (std::size_t i = 0; i < picture.values.size(); i += 4) {
                        const float* p = &picture.values[i];
                        // The negations catch what is not a number.
                        for (int c = 0; c < 4; ++c) {
                            if (!(p[c] >= lowest)) lowest = p[c];
                            if (!(p[c] <= highest)) highest = p[c];
                        }
                        over = std::max(over, std::max({p[0], p[1], p[2]}) - p[3]);
                    }
                    SCOPED_TRACE(testing::Message() << each.name << " " << width << "x" << height << " time "
                                                    << time << " strength " << strength);
                    EXPECT_GE(lowest, -1e-5);
                    EXPECT_LE(highest, 1 + 1e-5);
                    EXPECT_LE(over, 1e-5) << "colour exceeds alpha";
                }
            }
        }
    }
}

TEST(OnePassEffects, GrowWithTheStrength) {
    const Bitmap input = scene(128, 72);
    const Picture before = pictureOf(input);
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
        const auto filter = effect(each.name, scene(128, 72));
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

TEST(OnePassEffects, TheSameTimeIsTheSameFrame) {
    for (const OnePassEffect& each : kEffects) {
        const Bitmap input = scene(64, 64);
        const auto filter = effect(each.name, input);
        const Picture first = frameOf(*filter, 0.8f, 1.03);
        frameOf(*filter, 0.3f, 7.1);
        EXPECT_EQ(worstDifference(frameOf(*filter, 0.8f, 1.03), first), 0) << each.name;
        EXPECT_EQ(worstDifference(frameOf(*effect(each.name, input), 0.8f, 1.03), first), 0) << each.name;
    }
}

TEST(OnePassEffects, OnlyLightCoversWhatIsTransparent) {
    for (const OnePassEffect& each : kEffects) {
        const auto filter = effect(each.name, plain(96, 54, {0, 0, 0, 0}));
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

TEST(OnePassEffects, NoBorderComesIntoSight) {
    for (const OnePassEffect& each : kEffects) {
        if (!each.movesPicture) continue;
        for (const auto& [width, height] : kSizes) {
            const auto filter = effect(each.name, plain(width, height, {0.6f, 0.6f, 0.6f, 1}));
            for (const double time : kTimes) {
                const Picture picture = frameOf(*filter, 1, time);
                for (std::size_t i = 3; i < picture.values.size(); i += 4) {
                    ASSERT_NEAR(picture.values[i], 1, 1e-5) << each.name << " at " << time;
                }
            }
        }
    }
}

TEST(OnePassEffects, FireworksOfEachLevelDiffer) {
    const auto filter = effect("QVFireworkMTIFilter", plain(160, 90, {0, 0, 0, 1}));
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
    const auto snow = effect("QVSnowMTIFilter", plain(200, 200, {0, 0, 0, 0}));
    const Picture flakes = frameOf(*snow, 0.3f, 2.0), fallen = frameOf(*snow, 0.3f, 2.0 + 1 / 30.);
    double down = 0, up = 0;
    for (int rows = 1; rows <= 3; ++rows) {
        down += match(flakes, fallen, rows);
        up += match(flakes, fallen, -rows);
    }
    EXPECT_GT(down, 1.1 * up);
    EXPECT_GT(brightness(frameOf(*snow, 1, 2)), 2 * brightness(flakes));

    const auto fire = effect("QVFireMTIFilter", plain(120, 120, {0, 0, 0, 1}));
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
    const auto roll = effect("QVRepeatScrollIFilter", scene(100, 100));
    const Picture before = frameOf(*roll, 0, 1.0), after = frameOf(*roll, 0, 1.2);
    for (int y = 10; y < 40; ++y) {
        for (int x = 10; x < 90; x += 7) {
            ASSERT_NEAR(after.at(x, y)[0], before.at(x, y + 5)[0], 0.06) << x << " " << y;
        }
    }
}

}  // namespace
}  // namespace qv::test
