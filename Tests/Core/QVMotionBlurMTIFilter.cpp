#include "QVFilterCore/QVMotionBlurMTIFilter.h"

#include <algorithm>
#include <limits>
#include <numbers>

#include "Platform/ImageGraph/ImageNode.h"
#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

constexpr double kPi = std::numbers::pi;

/// Blurs with passes in float, so that faint smears are not rounded away.
Picture blurred(const Bitmap& bitmap, double size, double angle) {
    QVMotionBlurMTIFilter filter;
    filter.setOutputPixelFormat(MTIPixelFormat::rgba16Float);
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    filter.setBlurSize(size);
    filter.setBlurAngle(angle);
    return render(filter.outputImage());
}

TEST(QVMotionBlurMTIFilter, WithoutLengthItIsTheInput) {
    QVMotionBlurMTIFilter filter;
    filter.setInputImage(MTIImage::initWithColor({1, 0, 0, 1}, false, {8, 8}));
    for (const double size : {0.0, -3.0, double(NAN), std::numeric_limits<double>::infinity()}) {
        filter.setBlurSize(size);
        EXPECT_EQ(filter.outputImage(), filter.inputImage()) << size;
    }
}

TEST(QVMotionBlurMTIFilter, SpreadsADotEvenlyAlongTheAngle) {
    constexpr int kSide = 281, kMiddle = 140;
    const Bitmap dot = makeBitmap(kSide, kSide, [](int x, int y) {
        return Pixel{1, 1, 1, x == kMiddle && y == kMiddle ? 1.0f : 0.0f};
    });
    for (const double size : {6.0, 10.0, 24.0, 64.0, 123.0, 200.0}) {
        for (const double angle : {0.0, kPi / 6, kPi / 2, 3 * kPi / 4, -kPi / 5}) {
            const Picture picture = blurred(dot, size, angle);
            double mass = 0, middle = 0, along = 0, across = 0, reach = 0, unevenness = 0;
            for (int y = 0; y < kSide; ++y) {
                for (int x = 0; x < kSide; ++x) {
                    const double weight = picture.at(x, y)[3];
                    const double right = x - kMiddle, up = kMiddle - y;
                    const double u = right * std::cos(angle) + up * std::sin(angle);
                    const double v = up * std::cos(angle) - right * std::sin(angle);
                    mass += weight;
                    middle += weight * u;
                    along += weight * u * u;
                    across += weight * v * v;
                    if (weight > 1e-5) reach = std::max(reach, std::abs(u));
                    if (std::abs(v) < 0.1 && std::abs(u) < size / 2 - 2)
                        unevenness = std::max(unevenness, std::abs(weight - 1 / size));
                }
            }
            SCOPED_TRACE(testing::Message() << "size " << size << " angle " << angle);
            EXPECT_NEAR(mass, 1, 0.01);
            EXPECT_NEAR(middle, 0, 0.05);
            // Variance of an even line, and what bilinear reads and rounded steps add.
            EXPECT_NEAR(along / mass, size * size / 12, 0.5 + size * size * 0.004);
            EXPECT_LT(across / mass, 0.6);
            // The ends of a longer line run out, since it is blurred at a reduced size.
            EXPECT_LT(reach, size / 2 + (size > 18 ? size / 6 : 0) + 2);
            if (angle == 0 && size > 10) {
                EXPECT_LT(unevenness, 3.0 / 255) << "of a white dot's smear";
            }
        }
    }
}

TEST(QVMotionBlurMTIFilter, TurnsAnEdgeIntoAnEvenRampWithoutSteps) {
    constexpr int kWidth = 400, kEdge = 200;
    const Bitmap step = makeBitmap(kWidth, 3, [](int x, int) {
        const float level = x < kEdge ? 0.0f : 1.0f;
        return Pixel{level, level, level, 1};
    });
    for (const double size : {4.0, 10.0, 11.0, 40.0, 64.0, 123.0, 128.0, 129.0, 250.0}) {
        const Picture picture = blurred(step, size, kPi);
        double worst = 0;
        for (int x = 0; x < kWidth; ++x) {
            const double ramp = std::clamp((x + 0.5 - kEdge) / size + 0.5, 0.0, 1.0);
            worst = std::max(worst, std::abs(picture.at(x, 1)[0] - ramp));
        }
        EXPECT_LT(worst, std::max(0.02, 0.25 / size)) << "size " << size;
        EXPECT_EQ(picture.at(0, 1)[0], 0) << "the edge pixels go on outside";
        EXPECT_EQ(picture.at(kWidth - 1, 1)[0], 1);
    }
}

TEST(QVMotionBlurMTIFilter, TakesNoMorePassesAtALargerSize) {
    for (const double part : {0.032, 0.064}) {  // of the frame's width
        for (const double angle : {0.0, kPi / 4, kPi / 2, 0.4}) {
            for (const CGSize size : {CGSize{640, 360}, CGSize{1920, 1080}, CGSize{3840, 2160}}) {
                QVMotionBlurMTIFilter filter;
                const MTIImage image = MTIImage::initWithColor({1, 1, 1, 1}, false, size);
                filter.setInputImage(image);
                filter.setBlurSize(part * size.width);
                filter.setBlurAngle(angle);
                int passes = 0;
                for (MTIImage step = filter.outputImage(); step != image; step = step.node()->inputs.front())
                    ++passes;
                EXPECT_LE(passes, 3) << size.width << " " << part << " " << angle;
            }
        }
    }
}

}  // namespace
}  // namespace qv::test
