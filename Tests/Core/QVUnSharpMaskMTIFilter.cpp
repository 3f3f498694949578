#include "QVFilterCore/QVUnSharpMaskMTIFilter.h"

#include <algorithm>

#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

TEST(QVUnSharpMaskMTIFilter, AddsTheDifferenceToItsGaussian) {
    // A soft stair, translucent in the lower half.
    auto level = [](int x) { return x < 20 ? 0.4f : x < 40 ? 0.5f : 0.62f; };
    auto alpha = [](int y) { return y < 24 ? 1.0f : 0.6f; };
    const Bitmap bitmap = makeBitmap(64, 48, [&](int x, int y) {
        return Pixel{level(x), level(x), 0.2f, alpha(y)};
    });
    const Picture before = pictureOf(bitmap);

    QVUnSharpMaskMTIFilter filter;
    EXPECT_FALSE(filter.outputImage());
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    constexpr double kRadius = 3, kIntensity = 1.5;
    filter.setRadius(kRadius);
    filter.setIntensity(kIntensity);
    const Picture after = render(filter.outputImage());

    // Rows far from the change of alpha are a one-dimensional matter.
    for (const int y : {5, 42}) {
        for (int x = 0; x < 64; ++x) {
            double sum = 0, weights = 0;
            for (int d = -20; d <= 20; ++d) {
                const double weight = std::exp(-d * d / (2 * kRadius * kRadius));
                sum += weight * before.at(std::clamp(x + d, 0, 63), y)[0];
                weights += weight;
            }
            const double here = before.at(x, y)[0];
            EXPECT_NEAR(after.at(x, y)[0], here + kIntensity * (here - sum / weights), 2.0 / 255)
                << x << "," << y;
            EXPECT_NEAR(after.at(x, y)[2], before.at(x, y)[2], 1.5 / 255) << "flat channel";
            EXPECT_FLOAT_EQ(after.at(x, y)[3], before.at(x, y)[3]);
        }
    }
}

TEST(QVUnSharpMaskMTIFilter, NeutralSettingsAreTheInput) {
    QVUnSharpMaskMTIFilter filter;
    filter.setInputImage(MTIImage::initWithColor({0.3f, 0.5f, 0.9f, 1}, false, {32, 32}));
    filter.setIntensity(0);
    EXPECT_EQ(filter.outputImage(), filter.inputImage());
    filter.setIntensity(3);
    filter.setRadius(0);
    EXPECT_EQ(filter.outputImage(), filter.inputImage());
    filter.setRadius(4);
    EXPECT_TRUE(matches(render(filter.outputImage()), render(filter.inputImage()), 4.0 / 255))
        << "a flat picture";
}

}  // namespace
}  // namespace qv::test
