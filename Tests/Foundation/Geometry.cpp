#include "Platform/Geometry/Geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numbers>

#include "Platform/Foundation/Random.h"
#include "Platform/Geometry/UIColor.h"

namespace qv {
namespace {

void expectNear(CGPoint a, CGPoint b) {
    EXPECT_NEAR(a.x, b.x, 1e-9);
    EXPECT_NEAR(a.y, b.y, 1e-9);
}

double randomNumber(SeededRandom& random) {
    return random.next() / 2147483648.0 * 4 - 2;
}

TEST(CGAffineTransform, StepsComeBeforeTheTransformAndConcatAfter) {
    constexpr double quarter = std::numbers::pi / 2;
    expectNear(CGPointApplyAffineTransform({1, 0}, CGAffineTransformMakeRotation(quarter)), {0, 1});
    auto moved = CGAffineTransformMakeTranslation(10, 20);
    // (1, 2) scaled by (3, 4) and then moved; (1, 2) turned and then moved; (1, 2) moved on and then moved.
    expectNear(CGPointApplyAffineTransform({1, 2}, CGAffineTransformScale(moved, 3, 4)), {13, 28});
    expectNear(CGPointApplyAffineTransform({1, 2}, CGAffineTransformRotate(moved, quarter)), {8, 21});
    auto doubled = CGAffineTransformMakeScale(2, 2);
    expectNear(CGPointApplyAffineTransform({1, 2}, CGAffineTransformTranslate(doubled, 1, 1)), {4, 6});
    expectNear(CGPointApplyAffineTransform({1, 2}, CGAffineTransformConcat(doubled, moved)), {12, 24});
}

TEST(CGAffineTransform, ConcatIsCompositionAndTheInverseUndoesIt) {
    SeededRandom random(7);
    auto number = [&] { return randomNumber(random); };
    for (int i = 0; i < 200; ++i) {
        CGAffineTransform first{number(), number(), number(), number(), number(), number()};
        CGAffineTransform second{number(), number(), number(), number(), number(), number()};
        CGPoint point{number(), number()};
        auto onFirst = CGPointApplyAffineTransform(point, first);
        expectNear(CGPointApplyAffineTransform(point, CGAffineTransformConcat(first, second)),
                   CGPointApplyAffineTransform(onFirst, second));
        if (std::abs(first.a * first.d - first.b * first.c) > 0.01)
            expectNear(CGPointApplyAffineTransform(onFirst, CGAffineTransformInvert(first)), point);
    }
    CGAffineTransform flat{1, 2, 2, 4, 5, 6};
    EXPECT_EQ(CGAffineTransformInvert(flat), flat);
}

TEST(CGRect, SetOperationsIgnoreEmptyRectangles) {
    auto rect = CGRectMake(1, 2, 10, 20), empty = CGRectMake(100, 100, 0, 5),
         negative = CGRectMake(50, 50, -90, 90);
    EXPECT_TRUE(CGRectIsEmpty(empty) && CGRectIsEmpty(negative) && CGRectIsEmpty(CGRectMake(0, 0, NAN, 1)));
    EXPECT_EQ(CGRectUnion(rect, empty), rect);
    EXPECT_EQ(CGRectUnion(negative, rect), rect);
    EXPECT_EQ(CGRectUnion(empty, negative), CGRectZero);
    EXPECT_EQ(CGRectUnion(rect, CGRectMake(-1, 5, 3, 30)), CGRectMake(-1, 2, 12, 33));
    EXPECT_EQ(CGRectIntersection(rect, CGRectMake(5, 0, 100, 10)), CGRectMake(5, 2, 6, 8));
    EXPECT_EQ(CGRectIntersection(rect, CGRectMake(11, 2, 5, 5)), CGRectZero);  // they only touch
    EXPECT_EQ(CGRectInset(rect, 2, -1), CGRectMake(3, 1, 6, 22));
    // A unit square turned by 45 degrees is as wide as its diagonal.
    auto turned = CGRectApplyAffineTransform(CGRectMake(-0.5, -0.5, 1, 1),
                                             CGAffineTransformMakeRotation(0.25 * std::numbers::pi));
    EXPECT_NEAR(turned.size.width, std::sqrt(2.0), 1e-12);
    EXPECT_NEAR(turned.midY(), 0, 1e-12);
}

TEST(CGSize, TextReadsBackAsTheSameNumbers) {
    EXPECT_EQ(NSStringFromCGSize({1920, 1080}), "{1920, 1080}");
    EXPECT_EQ(NSStringFromCGSize({0.1, 100000}), "{0.1, 100000}");
    double width = 0, height = 0;
    ASSERT_EQ(std::sscanf(NSStringFromCGSize({1 / 3.0, 1e-7}).c_str(), "{%lf, %lf}", &width, &height), 2);
    EXPECT_EQ(CGSize(width, height), CGSize(1 / 3.0, 1e-7));
}

TEST(UIColor, HueAgreesWithTheWellKnownColours) {
    struct Known {
        UIColor color;
        double hue, saturation, brightness;
    };
    for (const auto& known :
         {Known{{1, 0, 0}, 0, 1, 1}, Known{{1, 1, 0}, 1 / 6.0, 1, 1}, Known{{0, 1, 0}, 2 / 6.0, 1, 1},
          Known{{0, 1, 1}, 3 / 6.0, 1, 1}, Known{{0, 0, 1}, 4 / 6.0, 1, 1}, Known{{1, 0, 1}, 5 / 6.0, 1, 1},
          Known{{0.5, 0.25, 0.25}, 0, 0.5, 0.5}, Known{{0.3, 0.3, 0.3}, 0, 0, 0.3},
          Known{{0, 0, 0}, 0, 0, 0}}) {
        auto [hue, saturation, brightness, alpha] = known.color.getHueSaturationBrightnessAlpha();
        EXPECT_NEAR(hue, known.hue, 1e-12);
        EXPECT_NEAR(saturation, known.saturation, 1e-12);
        EXPECT_NEAR(brightness, known.brightness, 1e-12);
        for (double turns : {-1.0, 0.0, 3.0}) {
            auto back =
                UIColor::colorWithHueSaturationBrightnessAlpha(hue + turns, saturation, brightness, alpha);
            EXPECT_NEAR(back.red(), known.color.red(), 1e-12);
            EXPECT_NEAR(back.green(), known.color.green(), 1e-12);
            EXPECT_NEAR(back.blue(), known.color.blue(), 1e-12);
        }
    }
}

TEST(UIColor, HexReadsAndWrites) {
    EXPECT_EQ(UIColor::fromHex("#f0a"), UIColor(1, 0, 170 / 255.0));
    EXPECT_EQ(UIColor::fromHex("#FF00fc"), UIColor(1, 0, 252 / 255.0));
    EXPECT_EQ(UIColor::fromHex("#0102fe80"), UIColor(1 / 255.0, 2 / 255.0, 254 / 255.0, 128 / 255.0));
    for (const char* wrong :
         {"", "#", "fff", "#ff", "#ffff", "#fffff", "#ggg", "#-ff", "#0x1", "#12 ", "#ffffffffff"})
        EXPECT_FALSE(UIColor::fromHex(wrong)) << wrong;
    for (const char* text : {"#000000", "#ff00fc", "#0102fe80"})
        EXPECT_EQ(UIColor::fromHex(text)->hex(), text);
    EXPECT_EQ(UIColor(2, -1, NAN, 0.5).hex(), "#ff000080");
}

}  // namespace
}  // namespace qv
