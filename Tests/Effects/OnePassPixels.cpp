// Pixels of one-pass effects that can be worked out by hand.

#include <algorithm>
#include <set>

#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

Picture rendered(std::string_view name, const Bitmap& input, float strength, double time = 0) {
    const auto effect = makeEffect(name);
    effect->setInputImage(MTIImage::imageWithBitmap(input));
    effect->setEffectValue(strength);
    effect->setITime(time);
    return render(effect->outputImage());
}

Bitmap plain(Pixel color) {
    return makeBitmap(32, 32, [&](int, int) { return color; });
}

TEST(QVBlackWhiteMTIFilter, GreyAtHalfStrengthHardAtFull) {
    const Bitmap colors = makeBitmap(64, 1, [](int x, int) {
        return Pixel{float(x * 37 % 64) / 63, float(x * 23 % 64) / 63, float(x) / 63, x % 2 ? 1.f : 0.6f};
    });
    const Picture before = pictureOf(colors), grey = rendered("QVBlackWhiteMTIFilter", colors, 0.5f);
    for (int x = 0; x < 64; ++x) {
        const Pixel was = before.at(x, 0), is = grey.at(x, 0);
        // Rec. 709 of the premultiplied colour is the premultiplied Rec. 709 of the colour.
        const double luma = 0.2126 * was[0] + 0.7152 * was[1] + 0.0722 * was[2];
        for (int c = 0; c < 3; ++c) ASSERT_NEAR(is[std::size_t(c)], luma, 1e-4) << x;
        ASSERT_EQ(is[3], was[3]);
    }
    // A quarter of 1: 3/16 - 2/64 = 0.15625 by the S-curve, stretched by 1.06 and lowered by 0.03.
    const Picture hard = rendered("QVBlackWhiteMTIFilter", plain({64 / 255.f, 64 / 255.f, 64 / 255.f, 1}), 1);
    const double x = 64 / 255.;
    EXPECT_NEAR(hard.at(5, 5)[1], x * x * (3 - 2 * x) * 1.06 - 0.03, 1e-4);
    EXPECT_EQ(rendered("QVBlackWhiteMTIFilter", plain({1, 1, 1, 1}), 1).at(0, 0)[0], 1);
    EXPECT_EQ(rendered("QVBlackWhiteMTIFilter", plain({0, 0, 0, 1}), 1).at(0, 0)[0], 0);
}

TEST(QVBlackFilmEffectMTIFilter, HardlyAnyColourIsLeft) {
    const Picture film = rendered("QVBlackFilmEffectMTIFilter", rampsBitmap(64, 64), 0.5f, 0.4);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            const Pixel p = film.at(x, y);
            ASSERT_LT(std::max({p[0], p[1], p[2]}) - std::min({p[0], p[1], p[2]}), 0.06);
        }
    }
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
    // From left to right nothing is folded over.
    for (int x = 1; x < width; ++x) ASSERT_GT(from(x, 50, 0), from(x - 1, 50, 0) - 1e-3) << x;
}

TEST(QVConvexMTIFilter, BringsTheMiddleCloserAndKeepsTheCorners) {
    const Picture after = rendered("QVConvexMTIFilter", rampsBitmap(160, 90), 1);
    // Shading takes all components alike, so the ratio to the constant blue tells where a pixel came from.
    const auto from = [&](int x, int y, std::size_t axis) {
        return after.at(x, y)[axis] / after.at(x, y)[2] * 0.5;
    };
    EXPECT_NEAR(from(159, 89, 0), 1, 0.02);
    EXPECT_NEAR(from(159, 89, 1), 1, 0.03);
    // To the lower right of the middle, out of the highlight's reach: closer by more than a third.
    const double distance = 100.5 / 160 - 0.5;
    EXPECT_LT(from(100, 55, 0) - 0.5, 0.67 * distance);
    EXPECT_GT(from(100, 55, 0) - 0.5, 0.3 * distance);
    // Along a row the picture never folds over.
    for (int x = 100; x < 156; ++x) EXPECT_LT(from(x, 60, 0), from(x + 4, 60, 0)) << x;
}

TEST(QVEdgeMTIFilter, LightsEdgesAndDarkensTheRest) {
    const Bitmap step = makeBitmap(64, 64, [](int x, int) {
        return x < 32 ? Pixel{0.9f, 0.2f, 0.1f, 1} : Pixel{0.1f, 0.2f, 0.3f, 1};
    });
    const Picture edge = rendered("QVEdgeMTIFilter", step, 1);
    for (int x : {5, 20, 45, 60}) {
        for (std::size_t c = 0; c < 3; ++c) EXPECT_LT(edge.at(x, 30)[c], 0.06) << x;
    }
    const Pixel tube = edge.at(31, 30);
    EXPECT_GT(tube[0], 0.6);
    EXPECT_GT(tube[0], 1.5 * tube[2]) << "an edge of a red thing shines red";
}

TEST(QVCrosshatchMTIFilter, MoreInkWhereItIsDarker) {
    double last = 2;
    for (const float grey : {1.f, 0.7f, 0.5f, 0.3f, 0.1f, 0.f}) {
        const Bitmap input = makeBitmap(240, 240, [&](int, int) { return Pixel{grey, grey, grey, 1}; });
        const Picture drawing = rendered("QVCrosshatchMTIFilter", input, 1);
        double paper = 0;
        for (int y = 0; y < 240; ++y) {
            for (int x = 0; x < 240; ++x) paper += double(drawing.at(x, y)[1]) / (240 * 240);
        }
        EXPECT_LT(paper, last - 0.03) << grey;
        if (grey == 1) {
            EXPECT_GT(paper, 0.93) << "bare paper";
        }
        last = paper;
    }
    EXPECT_LT(last, 0.4) << "nearly all ink";
}

TEST(QVHotlineMTIFilter, ColdIsBlueHotIsYellowAndWhite) {
    const Pixel cold = rendered("QVHotlineMTIFilter", plain({0.1f, 0.1f, 0.1f, 1}), 1).at(16, 16);
    const Pixel warm = rendered("QVHotlineMTIFilter", plain({0.5f, 0.5f, 0.5f, 1}), 1).at(16, 16);
    const Pixel hot = rendered("QVHotlineMTIFilter", plain({0.78f, 0.78f, 0.78f, 1}), 1).at(16, 16);
    EXPECT_GT(cold[2], cold[0] + 0.2f);
    EXPECT_GT(warm[0], warm[2] + 0.5f);
    EXPECT_GT(hot[1], 0.7f);
    EXPECT_LT(hot[2], 0.3f);
    EXPECT_GT(rendered("QVHotlineMTIFilter", plain({1, 1, 1, 1}), 1).at(16, 16)[2], 0.9f);
}

TEST(QVJPEGMTIFilter, ColourHasTwiceTheBlocksSideAndDamageMovesOn) {
    // At full strength a block of a 128-pixel frame has 4 pixels, so colour comes in squares of 8.
    const Bitmap input = rampsBitmap(128, 128);
    const Picture coded = rendered("QVJPEGMTIFilter", input, 1, 0.05);
    int odd = 0;
    for (int y = 40; y < 88; ++y) {
        for (int x = 40; x < 88; ++x) {
            const Pixel p = coded.at(x, y), q = coded.at(x / 8 * 8, y / 8 * 8);
            // Red minus green depends on chroma alone, unless a component was cut off at 0 or 1.
            if (std::abs((p[0] - p[1]) - (q[0] - q[1])) > 1e-4) ++odd;
        }
    }
    EXPECT_LT(odd, 48 * 48 / 20);

    const Picture later = rendered("QVJPEGMTIFilter", input, 1, 0.05 + 1 / 6.);
    EXPECT_GT(worstDifference(coded, later), 0.05);
    EXPECT_TRUE(matches(coded, rendered("QVJPEGMTIFilter", input, 1, 0.15), 0));
}

TEST(QVFlashLightMTIFilter, ATorchLightsOnePlaceOfTheNight) {
    const Picture night = rendered("QVFlashLightMTIFilter", rampsBitmap(160, 90), 1, 0.7);
    float darkest = 1, brightest = 0;
    for (int y = 0; y < 90; ++y) {
        for (int x = 0; x < 160; ++x) {
            darkest = std::min(darkest, night.at(x, y)[2]);
            brightest = std::max(brightest, night.at(x, y)[2]);
        }
    }
    EXPECT_LT(darkest, 0.1);
    EXPECT_GT(brightest, 0.5);
}

}  // namespace
}  // namespace qv::test
