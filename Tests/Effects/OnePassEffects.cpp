// The effects that are a shader alone: what holds for all of them, and pixels that can be worked out by hand.

#include <algorithm>
#include <set>

#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

/// The time changes nothing; strength 0 gives the input back; it may cover what is transparent.
constexpr int kStill = 1, kNeutral = 2, kLight = 4;
constexpr std::pair<const char*, int> kEffects[] = {
    {"QVBlackFilmEffectMTIFilter", 0},
    {"QVBlackFilmShakeMTIFilter", 0},
    {"QVBlackWhiteMTIFilter", kStill | kNeutral},
    {"QVBulgeDistortionMTIFilter", kStill | kNeutral},
    {"QVConvexMTIFilter", kStill | kNeutral},
    {"QVCrosshatchMTIFilter", kStill},
    {"QVDamageFilmMTIFilter", 0},
    {"QVEdgeMTIFilter", 0},
    {"QVFireMTIFilter", kLight},
    {"QVFireworkMTIFilter", kLight},
    {"QVFlashLightMTIFilter", 0},
    {"QVHotlineMTIFilter", 0},
    {"QVJPEGMTIFilter", 0},
    {"QVRepeatScrollIFilter", 0},
    {"QVSnowMTIFilter", kLight},
    {"QVThrillEffectMTIFilter", kNeutral},
    {"QVTrembleEffectMTIFilter", kNeutral},
    {"QVWaveMTIFilter", kNeutral},
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

/// Mean green of the rows from `top` up to `bottom`.
double brightness(const Picture& picture, int top, int bottom) {
    double sum = 0;
    for (int y = top; y < bottom; ++y)
        for (int x = 0; x < picture.width; ++x) sum += double(picture.at(x, y)[1]);
    return sum / double(picture.width * (bottom - top));
}

TEST(OnePassEffects, GrowWithTheStrengthMoveAndCoverNothingUnlessTheyAreLight) {
    const MTIImage input = sceneImage(128, 72), nothing = plainImage(96, 54, {0, 0, 0, 0});
    const Picture before = render(input), clear = render(nothing);
    for (const auto& [name, traits] : kEffects) {
        SCOPED_TRACE(name);
        const auto filter = effect(name, input);
        double change[3] = {};
        for (int step = 0; step < 3; ++step) {
            for (const double time : {0.1, 0.62, 1.4, 2.45})
                change[step] += meanDifference(frameOf(*filter, 0.5f * float(step), time), before) / 4;
        }
        EXPECT_GT(change[2], 0.012);
        EXPECT_GT(change[2], change[1]);
        EXPECT_GT(change[1], change[0]);
        EXPECT_TRUE(!(traits & kNeutral) || change[0] < 1e-4) << change[0];

        const Picture early = frameOf(*filter, 1, 0.2), late = frameOf(*filter, 1, 0.9);
        EXPECT_EQ(meanDifference(early, late) > 0.003, !(traits & kStill));
        filter->setInputImage(nothing);
        EXPECT_EQ(worstDifference(frameOf(*filter, 1, 1.3), clear) > 1e-3, (traits & kLight) != 0);
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
    EXPECT_GT(brightness(frameOf(*snow, 1, 2), 0, 200), 2 * brightness(flakes, 0, 200));

    const auto fire = effect("QVFireMTIFilter", plainImage(120, 120, {0, 0, 0, 1}));
    const Picture flames = frameOf(*fire, 0.5f, 3);
    EXPECT_GT(brightness(flames, 100, 120), 4 * brightness(flames, 20, 40));

    // One strip at strength 0, a quarter of the frame a second: after 0.2 s a twentieth higher.
    const auto roll = effect("QVRepeatScrollIFilter", sceneImage(100, 100));
    const Picture before = frameOf(*roll, 0, 1.0), after = frameOf(*roll, 0, 1.2);
    for (int y = 10; y < 40; ++y) {
        for (int x = 10; x < 90; x += 7) {
            ASSERT_NEAR(after.at(x, y)[0], before.at(x, y + 5)[0], 0.06) << x << " " << y;
        }
    }
}

Picture rendered(std::string_view name, const Bitmap& input, float strength, double time = 0) {
    return frameOf(*effect(name, MTIImage::imageWithBitmap(input)), strength, time);
}

Bitmap plain(Pixel color) {
    return makeBitmap(32, 32, [&](int, int) { return color; });
}

TEST(QVBlackWhiteMTIFilter, GreyAtHalfStrengthHardAtFull) {
    const Bitmap colors = makeBitmap(64, 1, [](int x, int) {
        return Pixel{float(x * 37 % 64) / 63, float(x * 23 % 64) / 63, float(x) / 63, x % 2 ? 1.f : 0.6f};
    });
    const Picture before = pictureOf(colors), grey = rendered("QVBlackWhiteMTIFilter", colors, 0.5f);
    // Rec. 709 of the premultiplied colour is the premultiplied Rec. 709 of the colour.
    EXPECT_TRUE(matchesPixels(grey, 1e-4, [&](int x, int y) {
        const Pixel was = before.at(x, y);
        const float luma = 0.2126f * was[0] + 0.7152f * was[1] + 0.0722f * was[2];
        return Pixel{luma, luma, luma, was[3]};
    }));
    // A quarter of 1: 3/16 - 2/64 = 0.15625 by the S-curve, stretched by 1.06 and lowered by 0.03.
    const Picture hard = rendered("QVBlackWhiteMTIFilter", plain({64 / 255.f, 64 / 255.f, 64 / 255.f, 1}), 1);
    const double x = 64 / 255.;
    EXPECT_NEAR(hard.at(5, 5)[1], x * x * (3 - 2 * x) * 1.06 - 0.03, 1e-4);
    EXPECT_EQ(rendered("QVBlackWhiteMTIFilter", plain({1, 1, 1, 1}), 1).at(0, 0)[0], 1);
    EXPECT_EQ(rendered("QVBlackWhiteMTIFilter", plain({0, 0, 0, 1}), 1).at(0, 0)[0], 0);
}

TEST(QVBlackFilmShakeMTIFilter, StandsWithinASlotAndJumpsBetweenThem) {
    // Brightness climbs by 1/30 a pixel around the middle row.
    const Bitmap input = makeBitmap(120, 120, [](int x, int y) {
        return Pixel{float(x) / 120, std::clamp((float(y) - 45) / 30, 0.f, 1.f), 0, 1};
    });
    const auto jitter = [&](double time) { return rendered("QVBlackFilmShakeMTIFilter", input, 1, time); };
    EXPECT_TRUE(matches(jitter(0.001), jitter(0.06), 0));  // a slot is 1/16 s
    std::set<float> places;
    for (int slot = 0; slot < 32; ++slot) places.insert(jitter((slot + 0.5) / 16).at(60, 60)[1]);
    EXPECT_GE(places.size(), 12u);
    // At most 0.015 of the shorter side, 1.8 pixels, off.
    for (const float place : places) EXPECT_NEAR(place, 15 / 30., 1.9 / 30);
    EXPECT_GT(*places.rbegin() - *places.begin(), 1.8 / 30) << "too still";
}

TEST(QVBulgeDistortionMTIFilter, SwellsTheMiddleAndLeavesTheRest) {
    const int width = 200, height = 100;
    const Bitmap input = rampsBitmap(width, height);
    const Picture before = pictureOf(input), after = rendered("QVBulgeDistortionMTIFilter", input, 1);
    // Where a pixel came from: red and green, rid of the light that the constant blue tells of.
    const double flat = before.at(0, 0)[2];
    const auto from = [&](int x, int y, std::size_t axis) {
        const double blue = after.at(x, y)[2], seen = after.at(x, y)[axis];
        return blue > flat ? 1 - (1 - seen) * (1 - flat) / (1 - blue) : seen * flat / blue;
    };
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            // In short sides from the centre.
            const double dx = (x + 0.5 - 100) / 100, dy = (y + 0.5 - 50) / 100, away = std::hypot(dx, dy);
            const double fromX = 2 * (from(x, y, 0) - 0.5), fromY = from(x, y, 1) - 0.5;
            // On the same ray, never farther out, and much closer in the middle.
            ASSERT_NEAR(fromX * dy, fromY * dx, 6e-3) << x << " " << y;
            ASSERT_LE(std::hypot(fromX, fromY), away * (away < 0.2 ? 0.5 : 1) + 0.012) << x << " " << y;
            if (away > 0.6) {
                ASSERT_NEAR(after.at(x, y)[0], before.at(x, y)[0], 1e-5);
            }
        }
    }
}

TEST(QVCrosshatchMTIFilter, MoreInkWhereItIsDarker) {
    double last = 2;
    for (const float grey : {1.f, 0.7f, 0.5f, 0.3f, 0.1f, 0.f}) {
        const Bitmap input = makeBitmap(240, 240, [&](int, int) { return Pixel{grey, grey, grey, 1}; });
        const double paper = brightness(rendered("QVCrosshatchMTIFilter", input, 1), 0, 240);
        EXPECT_LT(paper, last - 0.03) << grey;
        EXPECT_TRUE(grey < 1 || paper > 0.93) << "bare paper";
        last = paper;
    }
    EXPECT_LT(last, 0.4) << "nearly all ink";
}

TEST(QVHotlineMTIFilter, ColdIsBlueHotIsYellowAndWhite) {
    const auto seen = [](float tone) {
        return rendered("QVHotlineMTIFilter", plain({tone, tone, tone, 1}), 1).at(16, 16);
    };
    const Pixel cold = seen(0.1f), warm = seen(0.5f), hot = seen(0.78f);
    EXPECT_GT(cold[2], cold[0] + 0.2f);
    EXPECT_GT(warm[0], warm[2] + 0.5f);
    EXPECT_GT(hot[1], 0.7f);
    EXPECT_LT(hot[2], 0.3f);
    EXPECT_GT(seen(1)[2], 0.9f);
}

TEST(QVJPEGMTIFilter, ColourHasTwiceTheBlocksSideAndDamageMovesOn) {
    // At full strength a block of a 128-pixel frame has 4 pixels, so colour comes in squares of 8.
    const Bitmap input = rampsBitmap(128, 128);
    const Picture coded = rendered("QVJPEGMTIFilter", input, 1, 0.05);
    int odd = 0;
    for (int i = 0; i < 48 * 48; ++i) {
        const int x = 40 + i % 48, y = 40 + i / 48;
        const Pixel p = coded.at(x, y), q = coded.at(x / 8 * 8, y / 8 * 8);
        // Red minus green depends on chroma alone, unless a component was cut off at 0 or 1.
        odd += std::abs((p[0] - p[1]) - (q[0] - q[1])) > 1e-4;
    }
    EXPECT_LT(odd, 48 * 48 / 20);

    const Picture later = rendered("QVJPEGMTIFilter", input, 1, 0.05 + 1 / 6.);
    EXPECT_GT(worstDifference(coded, later), 0.05);
    EXPECT_TRUE(matches(coded, rendered("QVJPEGMTIFilter", input, 1, 0.15), 0));
}

}  // namespace
}  // namespace qv::test
