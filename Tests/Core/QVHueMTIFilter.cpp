#include "QVFilterCore/QVHueMTIFilter.h"

#include <algorithm>
#include <numbers>

#include "Platform/Geometry/UIColor.h"
#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

constexpr double kPi = std::numbers::pi;

double lumaOf(const Pixel& c) {
    return 0.2126 * c[0] + 0.7152 * c[1] + 0.0722 * c[2];
}

/// Colours of all kinds; the lower half translucent.
Bitmap manyColors() {
    return makeBitmap(64, 64, [](int x, int y) {
        return Pixel{float((x * 37 + y * 11) % 256) / 255, float((x * 5 + y * 91) % 256) / 255,
                     float((x * 61 + y * 29) % 256) / 255, y < 32 ? 1 : 0.5f};
    });
}

TEST(QVHueMTIFilter, WholeTurnsAndGreysStay) {
    QVHueMTIFilter filter;
    EXPECT_FALSE(filter.outputImage());
    filter.setInputImage(MTIImage::imageWithBitmap(manyColors()));
    for (const double turns : {0, 1, -1, 3}) {
        filter.setHue(float(turns * 2 * kPi));
        EXPECT_EQ(filter.outputImage(), filter.inputImage()) << turns;
    }

    const Bitmap greys = makeBitmap(256, 1, [](int x, int) {
        return Pixel{float(x) / 255, float(x) / 255, float(x) / 255, 1};
    });
    filter.setInputImage(MTIImage::imageWithBitmap(greys));
    filter.setHue(1.3f);
    EXPECT_TRUE(matches(render(filter.outputImage()), pictureOf(greys), 1e-5));
}

TEST(QVHueMTIFilter, AThirdOfATurnMovesEachChannelOn) {
    const Bitmap bitmap = manyColors();
    const Picture before = pictureOf(bitmap);
    QVHueMTIFilter filter;
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    filter.setHue(float(2 * kPi / 3));
    filter.setKeepsLuma(false);
    const Picture turned = render(filter.outputImage());
    for (int y = 0; y < turned.height; ++y) {
        for (int x = 0; x < turned.width; ++x) {
            const Pixel was = before.at(x, y), is = turned.at(x, y);
            // Red's place in the wheel is taken by green: what was red is green now.
            ASSERT_NEAR(is[1], was[0], 1e-5);
            ASSERT_NEAR(is[2], was[1], 1e-5);
            ASSERT_NEAR(is[0], was[2], 1e-5);
            ASSERT_EQ(is[3], was[3]);
        }
    }
}

TEST(QVHueMTIFilter, KeepsLumaAndTurnsTheHueOfColours) {
    const Bitmap bitmap = manyColors();
    const Picture before = pictureOf(bitmap);
    QVHueMTIFilter filter;
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    for (const double hue : {2 * kPi / 3, -2 * kPi / 3, 0.5, 2.0}) {
        filter.setHue(float(hue));
        const Picture after = render(filter.outputImage());
        for (int y = 0; y < after.height; ++y) {
            for (int x = 0; x < after.width; ++x) {
                const Pixel was = before.at(x, y), is = after.at(x, y);
                ASSERT_NEAR(lumaOf(is), lumaOf(was), 1e-4) << x << "," << y;
                for (std::size_t c = 0; c < 3; ++c) ASSERT_TRUE(is[c] >= -1e-6f && is[c] <= is[3] + 1e-6f);
                // The hexagonal hue and the angle about the grey axis differ by up to 1.12 degrees in
                // between, not after thirds of a turn.
                const float spread = *std::max_element(is.begin(), is.begin() + 3) -
                                     *std::min_element(is.begin(), is.begin() + 3);
                if (spread < 0.1f) continue;
                auto turnsOf = [](const Pixel& c) {
                    return UIColor(c[0], c[1], c[2]).getHueSaturationBrightnessAlpha().hue;
                };
                const double miss = std::remainder(turnsOf(is) - turnsOf(was) - hue / (2 * kPi), 1.0);
                ASSERT_LT(std::abs(miss), 2.3 / 360) << x << "," << y;
            }
        }
    }
}

}  // namespace
}  // namespace qv::test
