// What becomes of a context, its renders and the pictures when Vulkan calls, memory or threads fail.

#include <gmock/gmock.h>

#include <cstring>
#include <functional>
#include <thread>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/MTIFilters.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Tests/ImageGraph/Failures.h"
#include "Tests/ImageGraph/VulkanHost.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using testing::Each;
using testing::IsEmpty;
using Bytes = std::vector<std::uint8_t>;

constexpr int kWidth = 20, kHeight = 12;

Bytes bytesOf(const PixelBuffer& buffer) {
    Bytes bytes;
    for (int plane = 0; plane < PixelBuffer::planeCount(buffer.format()); ++plane) {
        const auto layout = PixelBuffer::planeLayout(buffer.format(), plane, kWidth, kHeight);
        for (int y = 0; y < layout.height; ++y) {
            const std::uint8_t* row =
                buffer.plane(plane).data + std::size_t(y) * buffer.plane(plane).rowBytes;
            bytes.insert(bytes.end(), row, row + layout.width * layout.bytesPerSample);
        }
    }
    return bytes;
}

Bitmap ramps() {
    return test::makeBitmap(kWidth, kHeight, [](int x, int y) {
        return test::Pixel{float(x) / kWidth, float(y) / kHeight, 0.4f, 1};
    });
}

MTIImage pass(std::string_view function, MTIImage input, MTIParameters parameters) {
    const CGSize size = input.size();
    return stockKernel(function)->applyToInputImages({std::move(input)}, std::move(parameters), size,
                                                     MTIPixelFormat::unspecified);
}

MTIImage picture() {
    return MTIImage::imageWithBitmap(ramps());
}

/// One picture over another, of the same size: textures that are left over may come back as either.
MTIImage twoPictures() {
    return stockKernel("MTIBlendScreen")
        ->applyToInputImages({picture(), picture()}, {{"intensity", 0.5f}}, {kWidth, kHeight},
                             MTIPixelFormat::unspecified);
}

/// Two passes that are drawn as one.
MTIImage graded(MTIImage image) {
    return pass("MTIOpacity", pass("MTIExposure", std::move(image), {{"gain", 1.5f}}), {{"opacity", 0.7f}});
}

/// A new picture drawn over the image.
MTIImage withSprite(MTIImage image) {
    const auto picture = std::make_shared<const SpriteTexture>(SpriteTexture{ramps(), "ramps"});
    auto node = std::make_shared<ImageNode>();
    node->operation = SpritePass{{{CGAffineTransformMakeScale(0.6, 0.6), 1, {1, 1, 1, 1}, picture}}};
    node->inputs = {std::move(image)};
    node->width = kWidth;
    node->height = kHeight;
    return MTIImage(std::move(node));
}

MTIImage videoFrame() {
    const auto frame = PixelBuffer::create(PixelFormat::i420, kWidth, kHeight);
    for (int plane = 0; plane < 3; ++plane) {
        const auto layout = PixelBuffer::planeLayout(frame.format(), plane, kWidth, kHeight);
        for (int y = 0; y < layout.height; ++y) {
            for (int x = 0; x < layout.width; ++x)
                frame.plane(plane).data[std::size_t(y) * frame.plane(plane).rowBytes + std::size_t(x)] =
                    std::uint8_t(60 + 4 * x + 3 * y * (plane + 1));
        }
    }
    return MTIImage::imageWithPixelBuffer(frame);
}

/// A way through the renderer: how a context is made, what is drawn and where it goes.
struct Way {
    const char* name;
    bool gpuPaths;
    std::function<MTIImage()> graph;  ///< the same picture each time, of new sources
    /// The result; empty with the cause when it failed.
    std::function<Bytes(MTIContext&, const MTIImage&, std::string*)> render;
};

class FailedRenders : public testing::Test {
  protected:
    void SetUp() override {
        test::messages().clear();
        options_.fusion = MTIFusion::beforeFirstFrame;
        options_.shaderCacheDirectory = QV_TEST_SHADER_CACHE;
    }
    void TearDown() override {
        test::allowAll();
        owner_.reset();  // the layer complains about everything that is left on a device that goes
        EXPECT_THAT(test::messages(), IsEmpty());
    }

    std::shared_ptr<MTIContext> makeContext(bool gpuPaths, std::string* error = nullptr) {
        options_.gpuPaths = gpuPaths;
        return MTIContext::create(owner_->shared(), options_, error);
    }

    static Bytes toBitmap(MTIContext& context, const MTIImage& image, std::string* error) {
        const Bitmap bitmap = context.renderToBitmap(image, error);
        const test::OwnWork copying;
        return bitmap ? *bitmap.pixels : Bytes();
    }
    static Bytes toPlanes(MTIContext& context, const MTIImage& image, std::string* error) {
        static const auto buffer = PixelBuffer::create(PixelFormat::i420, kWidth, kHeight);
        const auto task = context.startRender(image, buffer, error);
        if (!task || !task->wait(error)) return {};
        const test::OwnWork copying;
        return bytesOf(buffer);
    }
    Bytes toHostImage(MTIContext& context, const MTIImage& image, std::string* error) {
        const auto task = context.startRender(image, target_, {}, error);
        const bool done = task && task->wait(error);
        const test::OwnWork telling;
        return Bytes(done ? 1 : 0);
    }
    Bytes contentOfTarget() { return owner_->download(target_, kWidth * kHeight * 4, VK_NULL_HANDLE); }

    std::vector<Way> ways() {
        return {
            {"in place", false, [] { return graded(twoPictures()); }, toBitmap},
            {"staged, with sprites", true, [] { return withSprite(graded(picture())); }, toBitmap},
            {"planes", true, [] { return graded(videoFrame()); }, toPlanes},
            {"into a host's image", true, [] { return withSprite(picture()); },
             [this](auto& context, auto& image, auto* error) { return toHostImage(context, image, error); }},
        };
    }

    /// The render that follows a failure, of the very same picture, is right.
    void expectRight(const Way& way, MTIContext& context, const MTIImage& image, const Bytes& expected) {
        std::string error;
        Bytes result = way.render(context, image, &error);
        if (result.size() == 1) result = contentOfTarget();
        EXPECT_EQ(result, expected) << way.name << ": " << error;
    }

    /// Lets the library do something while `fail(index)` is in force, for each index until nothing fails, and
    /// calls `check` after each with what came of it.
    void sweep(const std::function<void(int)>& fail, const std::function<bool(std::string*)>& work,
               const std::function<void()>& check, int step = 1) {
        for (int index = 0;; index += step) {
            std::string error;
            fail(index);
            const bool done = work(&error);
            const bool failed = test::allowAll();
            if (!done) {
                EXPECT_TRUE(failed) << error;
                EXPECT_THAT(error, testing::Not(IsEmpty()));
                EXPECT_EQ(error.find('\n'), std::string::npos) << error;
            }
            check();
            if (!failed || HasFailure()) return;
        }
    }

    MTIContextOptions options_;
    std::unique_ptr<test::VulkanHost> owner_ = std::make_unique<test::VulkanHost>();
    MTIVulkanImage target_ =
        owner_->makeImage(kWidth, kHeight, VK_FORMAT_R8G8B8A8_UNORM, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL);
};

TEST_F(FailedRenders, EveryVulkanCallMayFailOnce) {
    for (const Way& way : ways()) {
        SCOPED_TRACE(way.name);
        const auto healthy = makeContext(way.gpuPaths);
        ASSERT_TRUE(healthy);
        Bytes expected = way.render(*healthy, way.graph(), nullptr);
        if (expected.size() == 1) expected = contentOfTarget();
        ASSERT_FALSE(expected.empty());

        std::shared_ptr<MTIContext> context;
        MTIImage image = way.graph();
        const auto renders = [&](std::string* error) { return !way.render(*context, image, error).empty(); };
        // From nothing: a context, its pipelines and its textures.
        sweep([](int index) { test::failVulkanCall(index); },
              [&](std::string* error) {
                  context = makeContext(way.gpuPaths, error);
                  return context && renders(error);
              },
              [&] {
                  if (context) expectRight(way, *context, image, expected);
                  image = way.graph();
              });
        // When all is there: new pictures are uploaded and drawn. They stay, so that the textures of dropped
        // frames are taken again.
        context = healthy;
        std::vector<MTIImage> images;
        sweep([](int index) { test::failVulkanCall(index); }, renders,
              [&] {
                  expectRight(way, *context, image, expected);
                  images.push_back(std::exchange(image, way.graph()));
              });
    }
    // A device of the library's own, also a watched one.
    MTIContextOptions options;
    for (bool watched : {false, true}) {
        options.validation = watched;
        sweep([](int index) { test::failVulkanCall(index); },
              [&](std::string* error) { return MTIContext::create(options, error) != nullptr; }, [] {});
    }
    sweep([](int index) { test::failVulkanCall(index); },
          [](std::string* error) { return !MTIContext::devices(error).empty(); }, [] {});
    EXPECT_EQ(test::failedFunctions(), test::failableFunctions()) << "what nothing fails is not tested";
}

TEST_F(FailedRenders, MemoryMayRunOutAnywhere) {
    for (const Way& way : ways()) {
        SCOPED_TRACE(way.name);
        const auto healthy = makeContext(way.gpuPaths);
        Bytes expected = way.render(*healthy, way.graph(), nullptr);
        if (expected.size() == 1) expected = contentOfTarget();
        std::shared_ptr<MTIContext> context;
        MTIImage image = way.graph();
        const auto renders = [&](std::string* error) { return !way.render(*context, image, error).empty(); };
        const auto check = [&] {
            if (context) expectRight(way, *context, image, expected);
            image = way.graph();
        };
        sweep([](int index) { test::failAllocation(index); },
              [&](std::string* error) {
                  context = makeContext(way.gpuPaths, error);
                  return context && renders(error);
              },
              check, 7);
        context = healthy;
        sweep([](int index) { test::failAllocation(index); }, renders, check);
    }
}

TEST_F(FailedRenders, ALostDeviceNeverReportsSuccess) {
    for (bool gpuPaths : {false, true}) {
        const auto context = makeContext(gpuPaths);
        const auto buffer = PixelBuffer::create(PixelFormat::rgba8, kWidth, kHeight);
        std::memset(buffer.plane(0).data, 77, buffer.plane(0).rowBytes * kHeight);
        const MTIImage image = picture();
        const auto task = context->startRender(image, buffer);
        ASSERT_TRUE(task);
        test::failVulkanCall(0, true);
        std::string error;
        EXPECT_FALSE(task->wait(&error));
        EXPECT_THAT(error, testing::HasSubstr("lost"));
        for (int i = 0; i < 4; ++i) EXPECT_EQ(context->startRender(image, buffer), nullptr);
        std::thread([&] { EXPECT_FALSE(task->wait()); }).join();
        test::allowAll();
        EXPECT_THAT(bytesOf(buffer), Each(77));
    }
}

TEST_F(FailedRenders, ATaskMayBeWaitedForLateOrNever) {
    MTIContextOptions options;
    options.gpuPaths = true;
    options.textureBudgetBytes = 0;  // what is let go is freed
    const auto context = MTIContext::create(owner_->shared(), options);
    const auto shade = [](int i) {
        return MTIImage::initWithColor({0, 0, float(i) / 255, 1}, false, {kWidth, kHeight});
    };
    const auto buffer = PixelBuffer::create(PixelFormat::rgba8, kWidth, kHeight);
    const auto late = context->startRender(shade(99), buffer);
    for (int i = 0; i < 9; ++i) {
        // Let go while the device is at it; the layer watches.
        ASSERT_TRUE(context->startRender(shade(i), PixelBuffer::create(PixelFormat::i420, kWidth, kHeight)));
    }
    ASSERT_TRUE(late->wait());
    EXPECT_EQ(buffer.plane(0).data[2], 99);
}

TEST_F(FailedRenders, StagingMemoryIsGivenBackAboveTheBudget) {
    MTIContextOptions options;
    options.gpuPaths = true;
    options.textureBudgetBytes = 1 << 20;
    const auto context = MTIContext::create(owner_->shared(), options);
    ASSERT_TRUE(context->renderToBitmap(MTIImage::initWithColor({}, false, {16, 16})));
    const std::uint64_t small = context->allocatedBytes();
    for (int side : {4000, 4100, 4200}) {
        const auto pixels = std::make_shared<const Bytes>(std::size_t(side) * 2600 * 4);
        ASSERT_TRUE(context->renderToBitmap(MTIImage::imageWithBitmap({side, 2600, pixels})));
    }
    for (int i = 0; i < 4; ++i) context->renderToBitmap(MTIImage::initWithColor({}, false, {16, 16}));
    EXPECT_LE(context->allocatedBytes(), small + (64u << 20));
}

TEST_F(FailedRenders, APictureIsResidentInSeveralContextsAtOnce) {
    const auto frame = PixelBuffer::create(PixelFormat::gray8, kWidth, kHeight);
    std::memset(frame.plane(0).data, 50, frame.plane(0).rowBytes * kHeight);
    const MTIImage image = MTIImage::imageWithPixelBuffer(frame);
    const auto preview = makeContext(true);
    auto exported = makeContext(false);
    const auto expectShade = [&](MTIContext& context, int shade) {
        EXPECT_EQ(toBitmap(context, image, nullptr)[0], shade);
    };
    for (int i = 0; i < 2; ++i) {
        expectShade(*preview, 50);
        expectShade(*exported, 50);
        // What is resident is not read again.
        std::memset(frame.plane(0).data, 90, frame.plane(0).rowBytes * kHeight);
    }
    exported = makeContext(false);
    expectShade(*exported, 90);
    expectShade(*preview, 50);
}

TEST(FailedThreads, LeaveThePassesPlainAndTheRowsToTheCaller) {
    // In a process of its own, in which no thread has been made yet.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            MTIContextOptions options;
            options.shaderCacheDirectory.clear();
            options.fusion = MTIFusion::inBackground;
            const auto context = MTIContext::create(options);
            test::failThreads();
            bool good = context != nullptr;
            for (int i = 0; good && i < 4; ++i) {
                const auto task = context->startRender(graded(picture()));
                good = task && task->wait() && task->statistics().passes == 2;
            }
            // Large enough to be shared out among threads.
            const auto large = PixelBuffer::create(PixelFormat::i420, 1280, 720);
            good = good && context->renderToBitmap(MTIImage::imageWithPixelBuffer(large));
            std::_Exit(good ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace qv
