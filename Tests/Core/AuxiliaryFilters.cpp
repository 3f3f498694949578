// The auxiliary filters that need no file of their own.
#include "QVFilterCore/QVExposureMTIFilter.h"
#include "QVFilterCore/QVTileMTIFilter.h"
#include "QVFilterCore/QVTurnBWMTIFilter.h"
#include "Tests/Support/TestContext.h"

#include <algorithm>

namespace qv::test {
namespace {

Bitmap manyColors(int width, int height) {
    return makeBitmap(width, height, [](int x, int y) {
        return Pixel{float((x * 37 + y * 11) % 256) / 255, float((x * 5 + y * 91) % 256) / 255,
                     float((x * 61 + y * 29) % 256) / 255, x % 3 ? 1 : 0.5f};
    });
}

TEST(QVTileMTIFilter, RepeatsPixelForPixel) {
    const Bitmap bitmap = manyColors(7, 5);
    const Picture tile = pictureOf(bitmap);
    QVTileMTIFilter filter;
    filter.setOutSize({20, 20});
    EXPECT_FALSE(filter.outputImage());
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    for (const CGSize size : {CGSize{7, 15}, CGSize{23, 11}, CGSize{4, 3}, CGSize{640.9, 1}}) {
        filter.setOutSize(size);
        const Picture tiled = render(filter.outputImage());
        ASSERT_EQ(tiled.width, int(size.width));
        ASSERT_EQ(tiled.height, int(size.height));
        Picture expected{tiled.width, tiled.height, {}};
        for (int y = 0; y < tiled.height; ++y) {
            for (int x = 0; x < tiled.width; ++x) {
                for (const float value : tile.at(x % 7, y % 5)) expected.values.push_back(value);
            }
        }
        EXPECT_TRUE(matches(tiled, expected, 1e-6));
    }
    for (const CGSize size : {CGSize{}, CGSize{7, 5}}) {
        filter.setOutSize(size);
        EXPECT_EQ(filter.outputImage(), filter.inputImage());
    }
}

TEST(QVTurnBWMTIFilter, MixesInTheGreyOfTheLuma) {
    const Bitmap bitmap = manyColors(40, 40);
    const Picture before = pictureOf(bitmap);
    QVTurnBWMTIFilter filter;
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    for (const float strength : {1.0f, 0.4f}) {
        filter.setStrength(strength);
        const Picture after = render(filter.outputImage());
        for (int i = 0; i < 1600; ++i) {
            const Pixel was = before.at(i % 40, i / 40);
            const float grey = 0.2126f * was[0] + 0.7152f * was[1] + 0.0722f * was[2];
            for (std::size_t c = 0; c < 3; ++c)
                ASSERT_NEAR(after.at(i % 40, i / 40)[c], was[c] + (grey - was[c]) * strength, 1e-5);
        }
    }
    filter.setStrength(0);
    EXPECT_EQ(filter.outputImage(), filter.inputImage());
}

TEST(QVExposureMTIFilter, MultipliesByPowersOfTwo) {
    const Bitmap bitmap = manyColors(40, 40);
    const Picture before = pictureOf(bitmap);
    QVExposureMTIFilter filter;
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    EXPECT_EQ(filter.outputImage(), filter.inputImage()) << "neutral";
    for (const float stops : {0.6f, -1.0f}) {
        filter.setExposure(stops);
        const Picture after = render(filter.outputImage());
        for (int i = 0; i < 1600; ++i) {
            const Pixel was = before.at(i % 40, i / 40);
            for (std::size_t c = 0; c < 3; ++c)
                ASSERT_NEAR(after.at(i % 40, i / 40)[c], std::min(was[c] * std::exp2(stops), was[3]), 1e-5);
        }
    }
}

}  // namespace
}  // namespace qv::test
