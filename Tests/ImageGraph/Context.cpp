// How a context renders: what it shares, what it gives back, and that its two ways with video planes agree.

#include "Platform/ImageGraph/MTIContext.h"

#include <gmock/gmock.h>

#include <cstring>
#include <random>
#include <thread>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/MTIFilters.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using testing::HasSubstr;

constexpr PixelFormat kYUVFormats[] = {
    PixelFormat::i420, PixelFormat::i422,       PixelFormat::i444,       PixelFormat::i420Alpha,
    PixelFormat::nv12, PixelFormat::i420Bits10, PixelFormat::i422Bits10, PixelFormat::i444Bits10};

/// A context that does as on a GPU, in the float working format.
const std::shared_ptr<MTIContext>& gpuWays() {
    static const auto instance = [] {
        MTIContextOptions options;
        options.validation = true;
        options.gpuPaths = true;
        options.workingPixelFormat = MTIPixelFormat::rgba16Float;
        return MTIContext::create(options);
    }();
    return instance;
}

MTIImage copied(const MTIImage& image) {
    return stockKernel("MTICopy")->applyToInputImages({image}, {}, image.size(), MTIPixelFormat::unspecified);
}

/// Smooth colour ramps: subsampled chroma loses little of them.
Bitmap ramps(int width, int height, bool transparent) {
    return test::makeBitmap(width, height, [&](int x, int y) {
        const float u = float(x) / float(width), v = float(y) / float(height);
        return test::Pixel{0.1f + 0.8f * u, 0.9f - 0.7f * v, 0.2f + 0.3f * (u + v),
                           transparent ? 0.5f + 0.5f * v : 1.0f};
    });
}

PixelBuffer renderedTo(MTIContext& context, const MTIImage& image, PixelFormat format,
                       ColorDescription color) {
    auto buffer = PixelBuffer::create(format, int(image.size().width), int(image.size().height), color);
    std::string error;
    const auto task = context.startRender(image, buffer, &error);
    EXPECT_TRUE(task && task->wait(&error)) << error;
    return buffer;
}

/// One pixel by the standard's own constants, in double: an oracle beside both ways.
std::array<double, 3> yuvOf(const test::Pixel& rgb, const ColorDescription& color, int bits) {
    const double kr = color.matrix == ColorMatrix::bt601   ? 0.299
                      : color.matrix == ColorMatrix::bt709 ? 0.2126
                                                           : 0.2627;
    const double kb = color.matrix == ColorMatrix::bt601   ? 0.114
                      : color.matrix == ColorMatrix::bt709 ? 0.0722
                                                           : 0.0593;
    const double y = kr * rgb[0] + (1 - kr - kb) * rgb[1] + kb * rgb[2];
    const double cb = (rgb[2] - y) / (2 * (1 - kb)), cr = (rgb[0] - y) / (2 * (1 - kr));
    const double unit = 1 << (bits - 8), top = (1 << bits) - 1;
    if (color.fullRange) return {y * top, cb * top + 128 * unit, cr * top + 128 * unit};
    return {(16 + 219 * y) * unit, (128 + 224 * cb) * unit, (128 + 224 * cr) * unit};
}

double sample(const PixelBuffer& buffer, int plane, int x, int y) {
    const auto& p = buffer.plane(plane);
    const auto layout = PixelBuffer::planeLayout(buffer.format(), plane, buffer.width(), buffer.height());
    const std::uint8_t* at =
        p.data + std::size_t(y) * p.rowBytes + std::size_t(x) * std::size_t(layout.bytesPerSample);
    if (PixelBuffer::bitDepth(buffer.format()) == 8) return *at;
    std::uint16_t wide;
    std::memcpy(&wide, at, 2);
    return wide;
}

TEST(Context, WritesEveryPlaneFormatAsTheStandardsSay) {
    const test::Pixel paint{0.7f, 0.25f, 0.1f, 1};
    const MTIImage image = MTIImage::initWithColor({paint[0], paint[1], paint[2], 1}, false, {37, 21});
    for (MTIContext* context : {test::context().get(), gpuWays().get()}) {
        ASSERT_NE(context, nullptr);
        for (PixelFormat format : kYUVFormats) {
            const int bits = PixelBuffer::bitDepth(format);
            if (bits > 8 && context != gpuWays().get()) continue;
            for (ColorMatrix matrix : {ColorMatrix::bt601, ColorMatrix::bt709, ColorMatrix::bt2020}) {
                for (bool full : {false, true}) {
                    const ColorDescription color{matrix, full};
                    const PixelBuffer buffer = renderedTo(*context, image, format, color);
                    const auto expected = yuvOf(paint, color, bits);
                    // Corners: the last samples of odd sides too.
                    const auto layout = PixelBuffer::planeLayout(format, 1, 37, 21);
                    const double step = context == gpuWays().get() ? 1 << (bits - 8) : 1;
                    EXPECT_NEAR(sample(buffer, 0, 36, 20), expected[0], 1.5 * step) << int(format);
                    EXPECT_NEAR(sample(buffer, 1, layout.width - 1, layout.height - 1), expected[1],
                                1.5 * step)
                        << int(format);
                    if (format != PixelFormat::nv12) {
                        EXPECT_NEAR(sample(buffer, 2, layout.width - 1, layout.height - 1), expected[2],
                                    1.5 * step)
                            << int(format);
                    }
                    if (format == PixelFormat::i420Alpha) {
                        EXPECT_EQ(sample(buffer, 3, 36, 20), 255);
                    }
                }
            }
        }
    }
    EXPECT_THAT(gpuWays()->validationMessages(), testing::IsEmpty());
}

TEST(Context, PlanesConvertedBesideTheDeviceAndInShadersAgree) {
    for (PixelFormat format : kYUVFormats) {
        if (PixelBuffer::bitDepth(format) > 8) continue;
        for (CGSize size : {CGSize{64, 48}, CGSize{37, 21}}) {
            const Bitmap bitmap = ramps(int(size.width), int(size.height), format == PixelFormat::i420Alpha);
            const ColorDescription color{ColorMatrix::bt709, false};
            const PixelBuffer frame =
                renderedTo(*test::context(), MTIImage::imageWithBitmap(bitmap), format, color);
            const MTIImage source = MTIImage::imageWithPixelBuffer(frame);
            const test::Picture here = test::pictureOf(test::context()->renderToBitmap(source));
            const test::Picture there = test::pictureOf(gpuWays()->renderToBitmap(source));
            // At the end of an odd side the last chroma sample may be interpolated or not: a quarter of a
            // steep ramp's step.
            const double tolerance = int(size.width) % 2 ? 5.5 / 255 : 3.5 / 255;
            EXPECT_LE(test::worstDifference(here, there), tolerance)
                << "format " << int(format) << ", width " << size.width;
            // Back and forth through smooth ramps loses little.
            EXPECT_LE(test::worstDifference(here, test::pictureOf(bitmap)), 6.5 / 255)
                << "format " << int(format);
            const PixelBuffer again = renderedTo(*gpuWays(), source, format, color);
            EXPECT_NEAR(sample(again, 0, 9, 9), sample(frame, 0, 9, 9), 2);
            EXPECT_NEAR(sample(again, 1, 5, 5), sample(frame, 1, 5, 5), 2);
        }
    }
}

TEST(Context, TenBitsSurviveAWholeTrip) {
    auto frame = PixelBuffer::create(PixelFormat::i420Bits10, 128, 16);
    for (int plane = 0; plane < 3; ++plane) {
        const auto layout = PixelBuffer::planeLayout(frame.format(), plane, 128, 16);
        for (int y = 0; y < layout.height; ++y) {
            auto* row = reinterpret_cast<std::uint16_t*>(frame.plane(plane).data +
                                                         std::size_t(y) * frame.plane(plane).rowBytes);
            // Neighbouring codes: eight bits could not tell them apart.
            for (int x = 0; x < layout.width; ++x) row[x] = std::uint16_t(plane == 0 ? 400 + x : 512 + x / 8);
        }
    }
    const PixelBuffer back =
        renderedTo(*gpuWays(), copied(MTIImage::imageWithPixelBuffer(frame)), frame.format(), frame.color());
    double worst = 0;
    for (int x = 0; x < 128; ++x)
        worst = std::max(worst, std::abs(sample(back, 0, x, 8) - sample(frame, 0, x, 8)));
    EXPECT_LE(worst, 1.0);
}

TEST(Context, ReadsAlphaAsTheImageSays) {
    auto buffer = PixelBuffer::create(PixelFormat::rgba8, 1, 1);
    const std::uint8_t straight[] = {200, 100, 40, 128};
    std::memcpy(buffer.plane(0).data, straight, 4);
    const auto pixel = [](const MTIImage& image) { return *test::context()->renderToBitmap(image).pixels; };
    EXPECT_THAT(pixel(MTIImage::imageWithPixelBuffer(buffer)), testing::ElementsAre(100, 50, 20, 128));
    EXPECT_THAT(pixel(MTIImage::imageWithPixelBuffer(buffer, MTIAlphaType::alphaIsOne)),
                testing::ElementsAre(200, 100, 40, 255));
    const Bitmap bitmap{
        1, 1, std::make_shared<const std::vector<std::uint8_t>>(std::vector<std::uint8_t>{100, 50, 20, 128})};
    EXPECT_THAT(pixel(MTIImage::imageWithBitmap(bitmap)), testing::ElementsAre(100, 50, 20, 128));
    EXPECT_THAT(pixel(MTIImage::imageWithBitmap(bitmap, MTIAlphaType::nonPremultiplied)),
                testing::ElementsAre(50, 25, 10, 128));
    EXPECT_THAT(pixel(MTIImage::imageWithBitmap(bitmap, MTIAlphaType::alphaIsOne)),
                testing::ElementsAre(100, 50, 20, 255));
}

TEST(Context, ANodeWithTwoReadersRunsOnceAndANilInputIsTransparent) {
    const MTIImage shared = copied(MTIImage::imageWithBitmap(ramps(32, 16, false)));
    MTIBlendFilter blend(MTIBlendMode::normal);
    blend.setInputBackgroundImage(copied(shared));
    blend.setInputImage(shared);
    MTIContextOptions options;
    options.fusion = MTIFusion::off;
    const auto context = MTIContext::create(options);
    const auto task = context->startRender(blend.outputImage());
    ASSERT_TRUE(task && task->wait());
    EXPECT_EQ(task->statistics().passes, 3);
    EXPECT_EQ(task->statistics().bytesWritten, 3u * 32 * 16 * 4);

    const MTIImage overNothing =
        stockKernel("MTICopy")->applyToInputImages({MTIImage()}, {}, {4, 4}, MTIPixelFormat::unspecified);
    EXPECT_EQ(test::render(overNothing).at(1, 1), (test::Pixel{0, 0, 0, 0}));
}

TEST(Context, FramesInFlightKeepApartAndMayBeWaitedForAnywhere) {
    struct InFlight {
        PixelBuffer buffer;
        std::unique_ptr<RenderTask> task;
        int shade;
    };
    std::vector<InFlight> all;
    for (int i = 0; i < 24; ++i) {
        auto frame = PixelBuffer::create(PixelFormat::gray8, 160, 90);
        std::memset(frame.plane(0).data, i * 10, frame.plane(0).rowBytes * 90);
        auto buffer = PixelBuffer::create(PixelFormat::rgba8, 160, 90);
        // The source goes out of scope while the device still reads it.
        all.push_back({buffer,
                       test::context()->startRender(copied(MTIImage::imageWithPixelBuffer(frame)), buffer),
                       i * 10});
    }
    std::thread([&] {
        for (auto it = all.rbegin(); it != all.rend(); ++it) ASSERT_TRUE(it->task && it->task->wait());
    }).join();
    for (const InFlight& one : all) EXPECT_EQ(one.buffer.plane(0).data[4 * 100], one.shade);
}

TEST(Context, MemoryStaysFlatWhileFramesChange) {
    std::uint64_t settled = 0;
    for (int i = 0; i < 200; ++i) {
        auto frame = PixelBuffer::create(PixelFormat::i420, 320, 180);
        MTIGaussianBlurFilter blur;
        blur.setInputImage(MTIImage::imageWithPixelBuffer(frame));
        blur.setRadius(8);
        ASSERT_TRUE(test::context()->startRender(blur.outputImage(), frame)->wait());
        if (i == 20) settled = test::context()->allocatedBytes();
    }
    EXPECT_LE(test::context()->allocatedBytes(), settled);
}

TEST(Context, MemoryComesBackWhenTheSizeChanges) {
    const auto context = MTIContext::create();
    ASSERT_TRUE(context);
    const auto draw = [&](CGSize size) {
        ASSERT_TRUE(context->startRender(MTIImage::initWithColor({1, 0, 0, 1}, false, size))->wait());
    };
    draw({16, 16});
    const std::uint64_t small = context->allocatedBytes();
    draw({6000, 3200});
    EXPECT_GE(context->allocatedBytes(), small + 6000u * 3200 * 4);
    for (int i = 0; i < 20; ++i) draw({16, 17});
    EXPECT_LE(context->allocatedBytes(), small);

    // Idle textures above the budget go at once.
    MTIContextOptions options;
    options.textureBudgetBytes = 1 << 20;
    const auto thrifty = MTIContext::create(options);
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(thrifty->startRender(MTIImage::initWithColor({}, false, {6000, 3200}))->wait());
    ASSERT_TRUE(thrifty->startRender(MTIImage::initWithColor({}, false, {16, 16}))->wait());
    EXPECT_LE(thrifty->allocatedBytes(), small + (64u << 20));
}

TEST(Context, WhatCannotBeRenderedIsALineNotACrash) {
    std::string error;
    EXPECT_FALSE(test::context()->renderToBitmap({}, &error));
    EXPECT_THAT(error, HasSubstr("nil"));
    const auto small = PixelBuffer::create(PixelFormat::rgba8, 8, 8);
    const MTIImage image = MTIImage::initWithColor({1, 0, 0, 1}, false, {9, 8});
    EXPECT_EQ(test::context()->startRender(image, small, &error), nullptr);
    EXPECT_THAT(error, HasSubstr("size"));
    EXPECT_EQ(test::context()->startRender(image, PixelBuffer(), &error), nullptr);

    MTIContextOptions options;
    options.deviceIndex = 99;
    EXPECT_EQ(MTIContext::create(options, &error), nullptr);
    EXPECT_THAT(error, HasSubstr("no Vulkan device 99; there "));
    EXPECT_FALSE(MTIImage::initWithColor({}, false, {0, 5}));
    EXPECT_FALSE(MTIImage::initWithColor({}, false, {NAN, 5}));
    EXPECT_FALSE(MTIImage::initWithColor({}, false, {kMaximumImageSide + 1.0, 5}));
}

TEST(Context, ImagesOutliveTheContextThatMadeThemResident) {
    const MTIImage image = MTIImage::imageWithBitmap(ramps(16, 16, false));
    for (int i = 0; i < 3; ++i) {
        const auto context = MTIContext::create();
        ASSERT_TRUE(context);
        EXPECT_EQ(test::worstDifference(test::pictureOf(context->renderToBitmap(image)),
                                        test::pictureOf(ramps(16, 16, false))),
                  0);
    }
}

}  // namespace
}  // namespace qv
