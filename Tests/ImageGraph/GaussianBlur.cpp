#include "Platform/ImageGraph/Private/GaussianBlur.h"

#include "Platform/ImageGraph/MTIFilters.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Tests/Support/GaussianReference.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using test::blurred;
using test::Difference;
using test::difference;
using test::edges;
using test::noise;

Bitmap render(const MTIImage& image) {
    std::string error;
    const std::size_t before = test::context()->validationMessages().size();
    Bitmap bitmap = test::context()->renderToBitmap(image, &error);
    EXPECT_TRUE(bitmap) << error;
    EXPECT_EQ(test::context()->validationMessages().size(), before);
    return bitmap;
}

MTIImage blurFilter(const MTIImage& image, float radius) {
    MTIGaussianBlurFilter filter;
    filter.setInputImage(image);
    filter.setRadius(radius);
    return filter.outputImage();
}

/// The passes that a GPU would run, whatever the device is.
MTIImage blurForGPU(MTIImage image, float radius) {
    const CGSize size = image.size();
    for (const BlurPass& pass : planGaussianBlur(radius, int(size.width), int(size.height), false)) {
        image = stockKernel(pass.function)
                    ->applyToInputImages({image}, pass.parameters, {double(pass.width), double(pass.height)},
                                         MTIPixelFormat::unspecified);
    }
    return image;
}

constexpr float kRadii[] = {0.3f, 0.5f, 0.8f, 1,  1.5f, 2,  2.4f, 2.5f, 3,  4,
                            5.5f, 7.9f, 8,    10, 13,   20, 27,   28,   40, 60};

TEST(GaussianBlur, AgreesWithConvolutionAtAllRadii) {
    for (const auto& [name, bitmap] :
         {std::pair{"noise", noise(181, 123)}, std::pair{"edges", edges(242, 147)}}) {
        const MTIImage image = MTIImage::imageWithBitmap(bitmap);
        for (float radius : kRadii) {
            const auto reference = blurred(bitmap, radius);
            const Difference plain = difference(render(blurFilter(image, radius)), reference);
            EXPECT_GE(plain.psnr, 50) << name << " " << radius;
            EXPECT_LE(plain.worst, 3) << name << " " << radius;
            const Difference gpu = difference(render(blurForGPU(image, radius)), reference);
            // A software device rounds each of its samples to 8 bits.
            EXPECT_GE(gpu.psnr, test::context()->device().isProcessor ? 47 : 50)
                << name << " sampled " << radius;
            EXPECT_LE(gpu.worst, test::context()->device().isProcessor ? 3.5 : 3)
                << name << " sampled " << radius;
        }
    }
}

TEST(GaussianBlur, AgreesWithConvolutionAtOddShapes) {
    for (auto [width, height] : {std::pair{1, 1}, {1, 40}, {40, 1}, {2, 3}, {7, 5}, {64, 37}}) {
        const Bitmap bitmap = edges(width, height);
        for (float radius : {0.7f, 2.0f, 3.0f, 9.0f, 30.0f, 300.0f}) {
            const Difference d = difference(render(blurFilter(MTIImage::imageWithBitmap(bitmap), radius)),
                                            blurred(bitmap, radius));
            EXPECT_LE(d.worst, 3) << width << " x " << height << " radius " << radius << " " << d.psnr
                                  << " dB";
        }
    }
}

TEST(GaussianBlur, OfGrayInMemoryAgreesWithConvolution) {
    // Rows that end where their memory does, and ones that are longer.
    for (auto [width, height] : {std::pair{1, 1}, {1, 40}, {65, 1}, {64, 37}, {181, 123}}) {
        for (std::size_t padding : {0, 13}) {
            const Bitmap bitmap = edges(width, height);
            const std::size_t stride = std::size_t(width) + padding;
            const auto bytes = std::make_shared<std::vector<std::uint8_t>>(stride * std::size_t(height));
            auto gray = std::make_shared<std::vector<std::uint8_t>>();
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x) {
                    const std::uint8_t value = (*bitmap.pixels)[std::size_t(y * width + x) * 4];
                    (*bytes)[stride * std::size_t(y) + std::size_t(x)] = value;
                    gray->insert(gray->end(), {value, value, value, 255});
                }
            }
            const MTIImage image = MTIImage::imageWithPixelBuffer(
                PixelBuffer::wrap(PixelFormat::gray8, width, height, {}, {{bytes->data(), stride}}, bytes));
            for (float radius : kRadii) {
                const auto reference = blurred({width, height, gray}, radius);
                EXPECT_LE(difference(render(blurFilter(image, radius)), reference).worst, 3)
                    << width << " x " << height << " radius " << radius;
            }
        }
    }
}

TEST(GaussianBlur, TakesAsManyPassesAtEverySize) {
    for (double radius : {2.5, 4.0, 12.5, 25.0, 36.0}) {  // of a frame of 720 lines
        const auto passes = [&](int width, int height) {
            return planGaussianBlur(float(radius * height / 720), width, height, true).size();
        };
        EXPECT_EQ(passes(1280, 720), 4u) << radius;
        EXPECT_EQ(passes(3840, 2160), 4u) << radius;
        EXPECT_LE(passes(640, 360), 4u) << radius;
    }
}

}  // namespace
}  // namespace qv
