// How a context renders: what it shares, what it gives back, and that its two ways with video planes agree.

#include "Platform/ImageGraph/MTIContext.h"

#include <gmock/gmock.h>

#include <cstring>
#include <thread>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/MTIFilters.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Tests/Support/TestContext.h"
#include "Tests/Support/VideoStandard.h"

namespace qv {
namespace {

using testing::HasSubstr;

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
    const MTIImage image = MTIImage::initWithColor({0.7f, 0.25f, 0.1f, 1}, false, {37, 21});
    for (MTIContext* context : {test::context().get(), gpuWays().get()}) {
        ASSERT_NE(context, nullptr);
        for (PixelFormat format : test::kYUVFormats) {
            const int bits = PixelBuffer::bitDepth(format);
            if (bits > 8 && context != gpuWays().get()) continue;
            for (ColorMatrix matrix : {ColorMatrix::bt601, ColorMatrix::bt709, ColorMatrix::bt2020}) {
                for (bool full : {false, true}) {
                    const ColorDescription color{matrix, full};
                    const PixelBuffer buffer = renderedTo(*context, image, format, color);
                    const auto expected =
                        test::VideoStandard(color, bits).toYUV({0.7 * 255, 0.25 * 255, 0.1 * 255});
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
    for (PixelFormat format : test::kYUVFormats) {
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

TEST(Context, ANodeWithTwoReadersRunsOnce) {
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
    EXPECT_THAT(error, HasSubstr("no device 99; there "));
}

}  // namespace
}  // namespace qv
