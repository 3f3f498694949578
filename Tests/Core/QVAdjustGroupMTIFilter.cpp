#include "QVFilterCore/QVAdjustGroupMTIFilter.h"

#include <algorithm>

#include "Platform/Geometry/UIColor.h"
#include "Platform/ImageGraph/ImageNode.h"
#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

double lumaOf(const Pixel& c) {
    return 0.2126 * c[0] + 0.7152 * c[1] + 0.0722 * c[2];
}

double hueOf(const Pixel& c) {
    return UIColor(c[0], c[1], c[2]).getHueSaturationBrightnessAlpha().hue;
}

PGCurve curveOf(double blacks, double shadows, double midtones, double highlights, double whites) {
    PGCurve curve;
    curve.setBlacksLevel(blacks);
    curve.setShadowsLevel(shadows);
    curve.setMidtonesLevel(midtones);
    curve.setHighlightsLevel(highlights);
    curve.setWhitesLevel(whites);
    return curve;
}

QVAdjustToolValue toolValueOf(const PGCurve& curve) {
    auto curves = PGCurvesToolValue::defaultValue();
    curves.luminanceCurve() = curve;
    auto value = QVAdjustToolValue::defaultValue();
    value.setCurvesToolValue(curves);
    return value;
}

/// Every grey in the first row, moderate and strong colours below.
Bitmap tones() {
    return makeBitmap(256, 24, [](int x, int y) {
        if (y == 0) return Pixel{float(x) / 255, float(x) / 255, float(x) / 255, 1};
        const UIColor color =
            UIColor::colorWithHueSaturationBrightnessAlpha(x / 256.0, y % 2 ? 0.4 : 1, y / 24.0, 1);
        return Pixel{float(color.red()), float(color.green()), float(color.blue()), 1};
    });
}

TEST(PGCurve, IsMonotoneThroughItsPoints) {
    EXPECT_EQ(PGCurve(), curveOf(0, 25, 50, 75, 100));
    const PGCurve curves[] = {curveOf(0, 25, 50, 75, 100), curveOf(0, 15, 42, 61, 100),
                              curveOf(0, 0, 98, 99, 100),  curveOf(20, 30, 31, 90, 95),
                              curveOf(100, 75, 50, 25, 0), curveOf(0, 60, 20, 90, 40)};
    for (const PGCurve& curve : curves) {
        double previous = curve.valueAt(0);
        for (int i = 0; i <= 1000; ++i) {
            const double x = i / 1000.0, y = curve.valueAt(x);
            const std::size_t span = std::min<std::size_t>(std::size_t(x * 4), 3);
            const double a = curve.levels()[span] / 100, b = curve.levels()[span + 1] / 100;
            EXPECT_GE(y, std::min(a, b) - 1e-12) << x;
            EXPECT_LE(y, std::max(a, b) + 1e-12) << x;
            if (i % 250) {
                EXPECT_GE((y - previous) * (b - a), -1e-12) << "turns back at " << x;
            }
            previous = y;
        }
        for (std::size_t i = 0; i < PGCurve::kPoints; ++i)
            EXPECT_DOUBLE_EQ(curve.valueAt(double(i) / 4), curve.levels()[i] / 100);
    }
    for (double x : {0.1, 0.3333, 0.77}) EXPECT_NEAR(PGCurve().valueAt(x), x, 1e-12) << "straight at first";
    // By hand: the levels 0, 20, 50 give slopes of 20 and 25 a span at 0 and 25 %.
    EXPECT_NEAR(curveOf(0, 20, 50, 80, 100).valueAt(0.125), 0.10 + (0.20 - 0.25) / 8, 1e-12);
    EXPECT_EQ(curveOf(-50, 25, 50, 75, 300).valueAt(-1), 0);
    EXPECT_EQ(curveOf(-50, 25, 50, 75, 300).valueAt(2), 1);
}

TEST(QVAdjustGroupMTIFilter, TheCurveMovesLumaAndKeepsHue) {
    const Bitmap bitmap = tones();
    const Picture before = pictureOf(bitmap);
    for (const PGCurve& curve : {curveOf(0, 15, 42, 61, 100), curveOf(10, 45, 65, 80, 95)}) {
        QVAdjustGroupMTIFilter filter(toolValueOf(curve));
        filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
        const Picture after = render(filter.outputImage());
        for (int i = 0; i < after.width * after.height; ++i) {
            const int x = i % after.width, y = i / after.width;
            const Pixel was = before.at(x, y), is = after.at(x, y);
            const auto [lowest, highest] = std::minmax_element(is.begin(), is.begin() + 3);
            ASSERT_NEAR(lumaOf(is), curve.valueAt(lumaOf(was)), 1.0 / 255) << x << "," << y;
            ASSERT_TRUE(*lowest >= -1e-6 && *highest <= 1 + 1e-6) << x << "," << y;
            if (y > 0 && *highest - *lowest > 0.1f) {
                ASSERT_LT(std::abs(std::remainder(hueOf(is) - hueOf(was), 1.0)), 0.005) << x << "," << y;
            }
        }
    }
}

TEST(QVAdjustGroupMTIFilter, BakesACurveOnceASetting) {
    QVAdjustGroupMTIFilter filter;
    filter.setInputImage(MTIImage::imageWithBitmap(tones()));
    EXPECT_EQ(filter.outputImage(), filter.inputImage()) << "neutral";

    auto table = [&] { return filter.outputImage().node()->inputs.at(1); };
    filter.setAdjustToolValue(toolValueOf(curveOf(0, 15, 42, 61, 100)));
    const MTIImage first = table();
    EXPECT_EQ(table(), first);
    filter.setAdjustToolValue(toolValueOf(curveOf(0, 15, 42, 61, 100)));
    EXPECT_EQ(table(), first) << "the same setting again";
    filter.setAdjustToolValue(toolValueOf(curveOf(0, 15, 43, 61, 100)));
    EXPECT_NE(table(), first);
}

TEST(QVAdjustMTIFilter, WarmthTintsAndBrightnessBends) {
    const Bitmap bitmap = tones();
    const Picture before = pictureOf(bitmap);
    QVAdjustValue value;
    QVAdjustMTIFilter filter(value);
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    EXPECT_EQ(filter.outputImage(), filter.inputImage()) << "neutral";

    filter.setBrightness(1);
    const Picture brighter = render(filter.outputImage());
    filter.setBrightness(-1);
    const Picture darker = render(filter.outputImage());
    for (int x = 0; x < 256; ++x) {
        const double level = x / 255.0;
        EXPECT_NEAR(brighter.at(x, 0)[1], level / (level + (1 - level) / 4), 1e-3);
        EXPECT_NEAR(darker.at(x, 0)[1], level / (level + (1 - level) * 4), 1e-3);
    }

    const auto tinted = [&](float warmth) {
        value.setWarmth(warmth);
        filter.setAdjustValue(value);
        return render(filter.outputImage());
    };
    const Picture warm = tinted(0.6f), cool = tinted(-0.6f);
    for (int x = 20; x < 200; x += 20) {
        const Pixel w = warm.at(x, 0), c = cool.at(x, 0);
        EXPECT_NEAR(lumaOf(w), x / 255.0, 2e-3);
        EXPECT_NEAR(lumaOf(c), x / 255.0, 2e-3);
        EXPECT_TRUE(w[0] > w[2] * 1.2f && c[2] > c[0] * 1.2f) << x;
    }
}

}  // namespace
}  // namespace qv::test
