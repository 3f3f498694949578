#include "Platform/ImageGraph/MTIFilters.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Platform/ImageGraph/ShaderLibrary.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using test::Pixel;

Bitmap colors() {
    return test::makeBitmap(64, 4, [](int x, int y) {
        return Pixel{float(x) / 63, float((x * 7) % 64) / 63, 0.4f, 1 - 0.25f * float(y)};
    });
}

/// What a filter makes of a straight colour, worked out in double for every pixel of `colors`.
void expectColors(const MTIImage& image,
                  const std::function<double(std::array<double, 3> color, int channel)>& expected) {
    const Bitmap bitmap = colors();
    const test::Picture picture = test::render(image);
    for (int y = 0; y < bitmap.height; ++y) {
        for (int x = 0; x < bitmap.width; ++x) {
            const std::uint8_t* p = bitmap.row(y) + x * 4;
            const double alpha = p[3] / 255.0;
            std::array<double, 3> color{};
            for (int c = 0; c < 3 && alpha > 0; ++c) color[std::size_t(c)] = p[c] / 255.0 / alpha;
            for (int c = 0; c < 3; ++c) {
                const double want = std::clamp(expected(color, c), 0.0, 1.0) * alpha;
                ASSERT_NEAR(picture.at(x, y)[std::size_t(c)], want, 1e-3)
                    << x << " " << y << " channel " << c;
            }
            ASSERT_NEAR(picture.at(x, y)[3], alpha, 1e-6);
        }
    }
}

template <typename Filter>
MTIImage filtered(void (Filter::*set)(float), float value) {
    Filter filter;
    filter.setInputImage(MTIImage::imageWithBitmap(colors()));
    (filter.*set)(value);
    return filter.outputImage();
}

TEST(MTIFilters, ChangeColoursAsTheirFormulasSay) {
    for (float stops : {-1.0f, 0.5f, 2.0f, 100.0f}) {
        expectColors(filtered(&MTIExposureFilter::setExposure, stops),
                     [&](const auto& c, int i) { return c[std::size_t(i)] * std::exp2(double(stops)); });
    }
    for (float brightness : {-0.3f, 0.25f, 1.0f}) {
        expectColors(filtered(&MTIBrightnessFilter::setBrightness, brightness),
                     [&](const auto& c, int i) { return c[std::size_t(i)] + brightness; });
    }
    for (float saturation : {0.0f, 0.4f, 1.7f}) {
        expectColors(filtered(&MTISaturationFilter::setSaturation, saturation), [&](const auto& c, int i) {
            const double grey = 0.2126 * c[0] + 0.7152 * c[1] + 0.0722 * c[2];
            return grey + saturation * (c[std::size_t(i)] - grey);
        });
    }
}

TEST(MTIFilters, OpacityScalesColourAndAlpha) {
    const test::Picture before = test::pictureOf(colors());
    const test::Picture after = test::render(filtered(&MTIOpacityFilter::setOpacity, 0.25f));
    for (std::size_t i = 0; i < before.values.size(); ++i)
        ASSERT_NEAR(after.values[i], before.values[i] * 0.25, 1e-5);
}

template <typename Filter>
void expectInputWhenNeutral(void (Filter::*set)(float), float neutral) {
    const MTIImage image = MTIImage::initWithColor({0.5f, 0.5f, 0.5f, 1}, false, {2, 2});
    Filter filter;
    EXPECT_FALSE(filter.outputImage());
    filter.setInputImage(image);
    for (float value :
         {neutral, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        (filter.*set)(value);
        // An infinite opacity or brightness is the strongest one.
        if (std::isinf(value) && filter.outputImage() != image) continue;
        EXPECT_EQ(filter.outputImage(), image) << value;
    }
    (filter.*set)(0.3f);
    ASSERT_TRUE(filter.outputImage());
    EXPECT_NE(filter.outputImage(), image);
    EXPECT_EQ(filter.outputImage().node()->stock.settings.size(), 1u);
    EXPECT_EQ(filter.outputImage().node()->stock.settings[0].second, "0.3");
}

TEST(MTIFilters, NeutralSettingsReturnTheInput) {
    expectInputWhenNeutral(&MTIOpacityFilter::setOpacity, 1);
    expectInputWhenNeutral(&MTIExposureFilter::setExposure, 0);
    expectInputWhenNeutral(&MTIBrightnessFilter::setBrightness, 0);
    expectInputWhenNeutral(&MTISaturationFilter::setSaturation, 1);
    expectInputWhenNeutral(&MTIGaussianBlurFilter::setRadius, 0);
}

/// A picture whose every pixel is different: red counts columns, green rows.
Bitmap grid(int width, int height) {
    return test::makeBitmap(width, height, [&](int x, int y) {
        return Pixel{float(x) / 255, float(y) / 255, 1, 1};
    });
}

MTIImage crop(const MTIImage& image, const MTICropRegion& region, float scale = 1) {
    MTICropFilter filter;
    filter.setInputImage(image);
    filter.setCropRegion(region);
    filter.setScale(scale);
    return filter.outputImage();
}

TEST(MTICropFilter, CutsOutPixels) {
    const MTIImage image = MTIImage::imageWithBitmap(grid(40, 30));
    const test::Picture pixels = test::render(crop(image, MTICropRegionMake(5, 7, 20, 10)));
    ASSERT_EQ(pixels.width, 20);
    ASSERT_EQ(pixels.height, 10);
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 20; ++x) {
            EXPECT_NEAR(pixels.at(x, y)[0] * 255, x + 5, 0.02);
            EXPECT_NEAR(pixels.at(x, y)[1] * 255, y + 7, 0.02);
            EXPECT_NEAR(pixels.at(x, y)[3], 1, 1e-3);
        }
    }
    const test::Picture fraction =
        test::render(crop(image, MTICropRegionMakeFractional(0.5, 0.5, 0.5, 0.5), 2));
    ASSERT_EQ(fraction.width, 40);
    ASSERT_EQ(fraction.height, 30);
    // A software device rounds samples to 8 bits.
    EXPECT_NEAR(fraction.at(10, 10)[0] * 255, 20 + 10.5 / 2 - 0.5, 0.3);
    EXPECT_NEAR(fraction.at(10, 10)[1] * 255, 15 + 10.5 / 2 - 0.5, 0.3);
    EXPECT_EQ(crop(image, MTICropRegion{}), image);
}

TEST(MTICropFilter, IsTransparentOutsideTheImage) {
    const MTIImage image = MTIImage::imageWithBitmap(grid(40, 30));
    const test::Picture picture = test::render(crop(image, MTICropRegionMake(-10, 20, 60, 20)));
    ASSERT_EQ(picture.width, 60);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 60; ++x) {
            const bool inside = x >= 10 && x < 50 && y < 10;
            EXPECT_NEAR(picture.at(x, y)[3], inside ? 1 : 0, 1e-3) << x << " " << y;
        }
    }
}

TEST(MTICropFilter, RefusesEmptyAndImpossibleRegions) {
    const MTIImage image = MTIImage::imageWithBitmap(grid(4, 3));
    EXPECT_FALSE(crop({}, MTICropRegion{}));
    for (double bad : {0.0, -5.0, 1e9, double(NAN), double(INFINITY)}) {
        EXPECT_FALSE(crop(image, MTICropRegionMake(0, 0, bad, 2))) << bad;
    }
    EXPECT_FALSE(crop(image, MTICropRegionMake(NAN, 0, 2, 2)));
    EXPECT_FALSE(crop(image, MTICropRegion{}, 0));
    EXPECT_FALSE(crop(image, MTICropRegion{}, NAN));
}

TEST(MTIKernel, LooksFunctionsUpAndKeepsWhatTheyRead) {
    std::vector<std::string> lines;
    setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    EXPECT_EQ(MTIRenderPipelineKernel::make({"NoSuchFunction", ""}), nullptr);
    EXPECT_EQ(MTIRenderPipelineKernel::make({"MTICopy", "/no/such/file"}), nullptr);
    setLogSink({});
    EXPECT_THAT(lines, testing::ElementsAre(testing::HasSubstr("NoSuchFunction"),
                                            testing::HasSubstr("/no/such/file: cannot be read")));
    const auto& copy = stockKernel("MTICopy");
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(&copy, &stockKernel("MTICopy"));
    const MTIImage image = MTIImage::initWithColor({1, 1, 1, 1}, false, {3, 2});
    // Further inputs than the function reads are not kept, missing ones read as transparent.
    const MTIImage kept = copy->applyToInputImages({image, image}, {}, {3.9, 2}, MTIPixelFormat::unspecified);
    EXPECT_EQ(kept.node()->inputs.size(), 1u);
    EXPECT_EQ(kept.size(), (CGSize{3, 2}));
    EXPECT_EQ(test::render(copy->applyToInputImages({}, {}, {1, 1}, MTIPixelFormat::unspecified)).at(0, 0),
              Pixel{});
    for (double side : {0.0, -1.0, 0.5, 16385.0, double(NAN), double(INFINITY)}) {
        EXPECT_FALSE(copy->applyToInputImages({image}, {}, {side, 2}, MTIPixelFormat::unspecified)) << side;
    }
}

}  // namespace
}  // namespace qv
