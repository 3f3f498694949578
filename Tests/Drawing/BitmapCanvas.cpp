#include "Platform/Drawing/BitmapCanvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace qv {
namespace {

using Color = std::array<double, 4>;  ///< premultiplied, 0..255

Color at(const BitmapCanvas& canvas, int x, int y) {
    auto bitmap = canvas.image().bitmap();
    const auto* p = bitmap.row(y) + x * 4;
    return {double(p[0]), double(p[1]), double(p[2]), double(p[3])};
}

void expectColor(const Color& actual, const Color& expected, double tolerance = 1.01) {
    for (int c = 0; c < 4; ++c) EXPECT_NEAR(actual[c], expected[c], tolerance) << "component " << c;
}

/// Left half red, right half blue, opaque.
UIImage halves(int width, int height) {
    BitmapCanvas canvas({double(width), double(height)});
    canvas.fillRect(CGRectMake(0, 0, width / 2, height), UIColor(1, 0, 0));
    canvas.fillRect(CGRectMake(width / 2, 0, width - width / 2, height), UIColor(0, 0, 1));
    return canvas.image();
}

TEST(BitmapCanvas, HasTheSizeThatItWasAskedFor) {
    BitmapCanvas canvas({10.2, 20.4}, false, 2);
    EXPECT_EQ(canvas.size(), (CGSize{10.2, 20.4}));
    canvas.fillRect({{0, 0}, canvas.size()}, UIColor::whiteColor());
    auto image = canvas.image();
    EXPECT_EQ(image.bitmap().width, 20);
    EXPECT_EQ(image.bitmap().height, 41);
    EXPECT_EQ(image.scale(), 2);
    expectColor(at(canvas, 19, 40), {255, 255, 255, 255}, 0);  // the size covers the last pixels whole
    for (CGSize wrong :
         {CGSize{0, 5}, {5, -1}, {NAN, 5}, {5, INFINITY}, {kMaximumImageSide + 1.0, 1}, {0.4, 5}}) {
        BitmapCanvas none(wrong);
        EXPECT_FALSE(none);
        none.saveState();
        none.fillRect(CGRectMake(0, 0, 1, 1), UIColor::whiteColor());
        none.drawImage(image, CGRectMake(0, 0, 1, 1));
        none.restoreState();
        EXPECT_FALSE(none.image());
    }
    EXPECT_FALSE(BitmapCanvas({5, 5}, false, 0));
    EXPECT_TRUE(BitmapCanvas({double(kMaximumImageSide), 1}));
}

// Each operator against the W3C formulas, at a place that both shapes cover and at one that only the first
// does.
TEST(BitmapCanvas, BlendsByTheCompositingFormulas) {
    const Color back{0.9, 0.3, 0.2, 0.6}, front{0.2, 0.8, 0.5, 0.7};  // straight
    double ab = back[3], as = front[3];
    auto expected = [&](CanvasBlend mode, int c) {
        double cb = back[c], cs = front[c];
        auto blended = [&](double mixed) {
            return as * (1 - ab) * cs + as * ab * mixed + (1 - as) * ab * cb;
        };
        switch (mode) {
            case CanvasBlend::normal:
                return blended(cs);
            case CanvasBlend::multiply:
                return blended(cs * cb);
            case CanvasBlend::screen:
                return blended(cs + cb - cs * cb);
            case CanvasBlend::add:
                return std::min(1.0, as * cs + ab * cb);
            case CanvasBlend::clear:
                return 0.0;
            case CanvasBlend::sourceIn:
                return as * cs * ab;
            case CanvasBlend::destinationIn:
                return ab * cb * as;
            case CanvasBlend::destinationOut:
                return ab * cb * (1 - as);
        }
        return -1.0;
    };
    auto alphaOf = [&](CanvasBlend mode) {
        switch (mode) {
            case CanvasBlend::add:
                return std::min(1.0, as + ab);
            case CanvasBlend::clear:
                return 0.0;
            case CanvasBlend::sourceIn:
            case CanvasBlend::destinationIn:
                return as * ab;
            case CanvasBlend::destinationOut:
                return ab * (1 - as);
            default:
                return as + ab - as * ab;
        }
    };
    BitmapCanvas swatch({8, 8});
    swatch.fillRect(CGRectMake(0, 0, 8, 8), UIColor(front[0], front[1], front[2]));
    for (int index = 0; index <= int(CanvasBlend::destinationOut); ++index) {
        auto mode = CanvasBlend(index);
        SCOPED_TRACE(index);
        bool clearsOutside = mode == CanvasBlend::sourceIn || mode == CanvasBlend::destinationIn;
        for (bool asPicture : {false, true}) {
            BitmapCanvas canvas({20, 10});
            canvas.fillRect(CGRectMake(0, 0, 20, 10), UIColor(back[0], back[1], back[2], ab));
            canvas.saveState();
            canvas.setBlend(mode);
            if (asPicture) canvas.setAlpha(as);
            if (asPicture) {
                canvas.drawImage(swatch.image(), CGRectMake(10, 0, 10, 10));
            } else {
                canvas.fillRect(CGRectMake(10, 0, 10, 10), UIColor(front[0], front[1], front[2], as));
            }
            canvas.restoreState();
            Color result;
            for (int c = 0; c < 3; ++c) result[c] = 255 * expected(mode, c);
            result[3] = 255 * alphaOf(mode);
            expectColor(at(canvas, 15, 5), result, 2);
            Color untouched{255 * back[0] * ab, 255 * back[1] * ab, 255 * back[2] * ab, 255 * ab};
            expectColor(at(canvas, 3, 5), clearsOutside ? Color{} : untouched);
        }
    }
}

TEST(BitmapCanvas, AnOpaqueCanvasStaysOpaque) {
    BitmapCanvas canvas({4, 4}, true);
    expectColor(at(canvas, 0, 0), {0, 0, 0, 255}, 0);
    canvas.setBlend(CanvasBlend::clear);
    canvas.fillRect(CGRectMake(0, 0, 4, 4), UIColor::whiteColor());
    EXPECT_EQ(at(canvas, 0, 0)[3], 255);
    canvas.setBlend(CanvasBlend::normal);
    canvas.fillRect(CGRectMake(0, 0, 4, 4), UIColor(1, 1, 1, 0.5));
    expectColor(at(canvas, 0, 0), {127.5, 127.5, 127.5, 255});
}

TEST(BitmapCanvas, HandsOverItsPixelsAsTheyAre) {
    for (bool opaque : {false, true}) {
        BitmapCanvas canvas({5, 3}, opaque, 2);
        canvas.fillRect(CGRectMake(1, 1, 2, 1), UIColor(1, 0.5, 0, 0.5));
        const UIImage kept = canvas.image(), taken = canvas.takeImage();
        EXPECT_EQ(*taken.bitmap().pixels, *kept.bitmap().pixels);
        EXPECT_EQ(taken.size(), kept.size());
        EXPECT_FALSE(canvas);
        EXPECT_FALSE(canvas.takeImage());
    }
}

TEST(BitmapCanvas, StateIsSavedWholeAndExtraRestoresAreHarmless) {
    BitmapCanvas canvas({10, 10});
    auto white = UIColor::whiteColor();
    canvas.saveState();
    canvas.concatTransform(CGAffineTransformMakeTranslation(5, 0));
    canvas.clipToRect(CGRectMake(0, 0, 5, 5));
    canvas.setAlpha(0.5);
    canvas.setBlend(CanvasBlend::add);
    canvas.fillRect(CGRectMake(-10, -10, 50, 50), white);
    canvas.restoreState();
    canvas.restoreState();
    expectColor(at(canvas, 7, 2), {127.5, 127.5, 127.5, 127.5});
    expectColor(at(canvas, 2, 2), {0, 0, 0, 0}, 0);
    expectColor(at(canvas, 7, 7), {0, 0, 0, 0}, 0);
    canvas.fillRect(CGRectMake(0, 0, 10, 10), UIColor(0, 0, 1));
    expectColor(at(canvas, 7, 2), {0, 0, 255, 255}, 0);
    // Transforms nest: the inner step comes first.
    canvas.concatTransform(CGAffineTransformMakeTranslation(4, 4));
    canvas.concatTransform(CGAffineTransformMakeScale(2, 2));
    canvas.fillRect(CGRectMake(1, 1, 1, 1), white);
    expectColor(at(canvas, 6, 6), {255, 255, 255, 255}, 0);
    expectColor(at(canvas, 8, 8), {0, 0, 255, 255}, 0);
}

TEST(BitmapCanvas, ClipsMeet) {
    BitmapCanvas canvas({100, 100});
    canvas.clipToPath(UIBezierPath::bezierPathWithOvalInRect(CGRectMake(0, 0, 100, 100)));
    canvas.clipToRect(CGRectMake(0, 0, 50, 100));
    canvas.drawLinearGradient({0, 0}, {1, 0}, {{0, UIColor::whiteColor()}, {1, UIColor::whiteColor()}});
    double covered = 0;
    auto bitmap = canvas.image().bitmap();
    for (int i = 3; i < 100 * 100 * 4; i += 4) covered += (*bitmap.pixels)[i] / 255.0;
    EXPECT_NEAR(covered, std::numbers::pi * 50 * 50 / 2, 10);
}

TEST(BitmapCanvas, WhatCannotBeDrawnIsLeftOutAndTheRestGoesOn) {
    BitmapCanvas canvas({10, 10});
    auto red = UIColor(1, 0, 0), white = UIColor::whiteColor();
    auto image = halves(4, 4);
    canvas.saveState();
    canvas.concatTransform(CGAffineTransformMakeScale(0, 1));
    canvas.concatTransform(CGAffineTransformMakeScale(1, 1));
    canvas.fillRect(CGRectMake(0, 0, 10, 10), red);
    canvas.drawImage(image, CGRectMake(0, 0, 10, 10));
    canvas.drawLinearGradient({0, 0}, {1, 1}, {{0, red}, {1, red}});
    canvas.restoreState();
    for (double bad : {double(NAN), double(INFINITY)}) {
        canvas.fillRect(CGRectMake(0, 0, bad, 10), red);
        canvas.drawImage(image, CGRectMake(bad, 0, 10, 10));
        canvas.drawRadialGradient({0, 0}, 0, {0, 0}, bad, {{0, red}});
        UIBezierPath path;
        path.moveToPoint({0, 0});
        path.addLineToPoint({9, bad});
        canvas.strokePath(path, red, 3);
        canvas.strokePath(UIBezierPath::bezierPathWithRect(CGRectMake(0, 0, 9, 9)), red, bad);
        canvas.saveState();
        canvas.concatTransform(CGAffineTransformMakeTranslation(bad, 0));
        canvas.fillRect(CGRectMake(0, 0, 10, 10), red);
        canvas.restoreState();
    }
    canvas.fillRect(CGRectMake(5, 5, -5, -5), red);
    canvas.drawImage(image, CGRectMake(0, 0, 0, 5));
    canvas.drawImage(UIImage(), CGRectMake(0, 0, 10, 10));
    canvas.drawLinearGradient({0, 0}, {1, 1}, {});
    canvas.drawText("text", {0, 0}, UIFont(), red);
    auto bitmap = canvas.image().bitmap();
    EXPECT_TRUE(
        std::all_of(bitmap.pixels->begin(), bitmap.pixels->end(), [](auto value) { return value == 0; }));
    canvas.fillRect(CGRectMake(0, 0, 10, 10), UIColor(NAN, 7, -1));
    expectColor(at(canvas, 5, 5), {0, 255, 0, 255}, 0);
    canvas.strokePath(UIBezierPath::bezierPathWithRect(CGRectMake(2, 2, 6, 6)), white, 2, LineCap::butt,
                      LineJoin::miter, {1, -1});
    expectColor(at(canvas, 5, 2), {255, 255, 255, 255}, 0);
}

TEST(BitmapCanvas, StrokesHaveTheirWidthCapsAndDashes) {
    UIBezierPath line;
    line.moveToPoint({10, 10});
    line.addLineToPoint({30, 10});
    auto inked = [&](LineCap cap, std::vector<double> dashes) {
        BitmapCanvas canvas({40, 20});
        canvas.strokePath(line, UIColor::blackColor(), 4, cap, LineJoin::miter, dashes);
        auto bitmap = canvas.image().bitmap();
        double sum = 0;
        for (std::size_t i = 3; i < bitmap.pixels->size(); i += 4) sum += (*bitmap.pixels)[i] / 255.0;
        return sum;
    };
    EXPECT_NEAR(inked(LineCap::butt, {}), 80, 0.1);
    EXPECT_NEAR(inked(LineCap::square, {}), 96, 0.1);
    EXPECT_NEAR(inked(LineCap::round, {}), 80 + std::numbers::pi * 4, 0.3);
    EXPECT_NEAR(inked(LineCap::butt, {3, 2}), 48, 0.1);
    // A ring: filled with the even-odd rule its middle stays open.
    auto ring = UIBezierPath::bezierPathWithRect(CGRectMake(0, 0, 9, 9));
    ring.appendPath(UIBezierPath::bezierPathWithRect(CGRectMake(3, 3, 3, 3)));
    for (bool evenOdd : {false, true}) {
        BitmapCanvas canvas({9, 9});
        canvas.fillPath(ring, UIColor::blackColor(), evenOdd);
        EXPECT_EQ(at(canvas, 4, 4)[3], evenOdd ? 0 : 255);
        EXPECT_EQ(at(canvas, 1, 1)[3], 255);
    }
}

TEST(BitmapCanvas, GradientsMixAndGoOn) {
    BitmapCanvas canvas({100, 100});
    UIColor from(1, 0, 0), to(0, 0, 1, 0.5);
    canvas.drawLinearGradient({20, 0}, {80, 0}, {{0, from}, {1, to}});
    expectColor(at(canvas, 5, 50), {255, 0, 0, 255}, 0);
    expectColor(at(canvas, 95, 50), {0, 0, 127.5, 127.5});
    double t = (50.5 - 20) / 60, alpha = 1 - t / 2;
    expectColor(at(canvas, 50, 7), {255 * (1 - t) * alpha, 0, 255 * t * alpha, 255 * alpha}, 2);
    BitmapCanvas round({100, 100});
    round.drawRadialGradient({50, 50}, 10, {50, 50}, 40,
                             {{0, UIColor::whiteColor()}, {1, UIColor::blackColor()}});
    EXPECT_EQ(at(round, 50, 50)[0], 255);
    EXPECT_EQ(at(round, 2, 2)[0], 0);
    double radius = std::hypot(25.5, 0.5);
    EXPECT_NEAR(at(round, 75, 50)[0], 255 * (1 - (radius - 10) / 30), 2);
}

TEST(BitmapCanvas, PicturesAreCopiedExactlyWhereTheyFit) {
    auto image = halves(5, 4);
    for (double scale : {1.0, 2.0}) {
        BitmapCanvas canvas({20 / scale, 20 / scale}, false, scale);
        canvas.drawImage(image, CGRectMake(3 / scale, 6 / scale, 5 / scale, 4 / scale));
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 20; ++x) {
                bool inside = x >= 3 && x < 8 && y >= 6 && y < 10;
                expectColor(at(canvas, x, y),
                            !inside ? Color{}
                            : x < 5 ? Color{255, 0, 0, 255}
                                    : Color{0, 0, 255, 255},
                            0);
            }
    }
}

TEST(BitmapCanvas, ScaledPicturesHaveNoFringe) {
    auto image = halves(64, 64);
    for (auto [width, height] : {std::pair(200, 150), {64, 65}, {40, 20}, {3, 2}, {500, 7}}) {
        BitmapCanvas canvas({double(width), double(height)});
        canvas.drawImage(image, CGRectMake(0, 0, width, height));
        auto bitmap = canvas.image().bitmap();
        for (std::size_t i = 3; i < bitmap.pixels->size(); i += 4) ASSERT_EQ((*bitmap.pixels)[i], 255);
        expectColor(at(canvas, 0, height - 1), {255, 0, 0, 255}, 0);
        expectColor(at(canvas, width - 1, 0), {0, 0, 255, 255}, 0);
    }
    // Turned by a quarter the picture's left is on top; turned at all, its inside stays opaque.
    BitmapCanvas turned({64, 64});
    turned.concatTransform(CGAffineTransformMakeTranslation(32, 32));
    turned.concatTransform(CGAffineTransformMakeRotation(std::numbers::pi / 2));
    turned.drawImage(image, CGRectMake(-32, -32, 64, 64));
    expectColor(at(turned, 60, 3), {255, 0, 0, 255}, 0);
    expectColor(at(turned, 3, 60), {0, 0, 255, 255}, 0);
    BitmapCanvas tilted({100, 100});
    tilted.concatTransform(CGAffineTransformMakeTranslation(50, 50));
    tilted.concatTransform(CGAffineTransformMakeRotation(0.5));
    tilted.drawImage(image, CGRectMake(-30, -30, 60, 60));
    auto bitmap = tilted.image().bitmap();
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 100; ++x) {
            double dx = x + 0.5 - 50, dy = y + 0.5 - 50;
            double reach = std::max(std::abs(dx * std::cos(0.5) + dy * std::sin(0.5)),
                                    std::abs(dy * std::cos(0.5) - dx * std::sin(0.5)));
            if (reach > 29.2 && reach < 30.8) continue;
            ASSERT_EQ(bitmap.row(y)[x * 4 + 3], reach < 30 ? 255 : 0) << x << ", " << y;
        }
}

}  // namespace
}  // namespace qv
