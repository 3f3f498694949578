// What a native context gives whatever it runs on, and what becomes of it when its cache or its memory is not
// as it should be.

#include "Platform/ImageGraph/Native/NativeContext.h"

#include <gmock/gmock.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/MTIFilters.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Platform/Media/PixelConversion.h"
#include "Tests/Media/TemporaryFolder.h"
#include "Tests/Support/Picture.h"

extern "C" const qv::NativeCompiler* qvNativeCompiler(int interfaceVersion);

namespace qv {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Bytes = std::vector<std::uint8_t>;

/// Refuses to compile, or not.
struct Compiler final : NativeCompiler {
    std::string version() const override { return itsVersion; }
    std::vector<std::byte> compile(const NativeKernelSource& source, NativeTarget target,
                                   std::string* error) const override {
        if (compiles) return real.compile(source, target, error);
        *error = "no compiler today";
        return {};
    }
    const NativeCompiler& real = *qvNativeCompiler(kNativeInterfaceVersion);
    std::string itsVersion = real.version();
    bool compiles = true;
};

class NativeContexts : public testing::Test {
  protected:
    void SetUp() override {
        if (!nativeTargetOfMachine()) GTEST_SKIP() << "no instructions that kernels are compiled for";
        options_.shaderCacheDirectory = folder_ / "cache";
        options_.fusion = MTIFusion::beforeFirstFrame;
    }
    std::shared_ptr<MTIContext> make(std::optional<NativeTarget> target = {}) { return makeNative(target); }
    std::shared_ptr<NativeContext> makeNative(std::optional<NativeTarget> target = {}) {
        return std::make_shared<NativeContext>(compiler_, target.value_or(*nativeTargetOfMachine()), options_,
                                               GraphicsDevice{});
    }
    /// The picture, and how many kernels were compiled for it.
    Bytes render(const MTIImage& image, int* compiled = nullptr, std::string* error = nullptr) {
        const auto context = makeNative();
        const Bitmap bitmap = context->renderToBitmap(image, error);
        if (compiled) *compiled = context->compiledCount();
        return bitmap ? *bitmap.pixels : Bytes();
    }

    const TemporaryFolder folder_;
    Compiler compiler_;
    MTIContextOptions options_;
};

MTIImage ramps(int width, int height) {
    return MTIImage::imageWithBitmap(test::makeBitmap(width, height, [&](int x, int y) {
        const float u = float(x) / float(width), v = float(y) / float(height);
        return test::Pixel{u, v, (x / 5 + y / 3) % 2 ? 0.9f : 0.2f, 1};
    }));
}

MTIImage pass(const char* function, const MTIImage& image, MTIParameters parameters) {
    return stockKernel(function)->applyToInputImages({image}, std::move(parameters), image.size(),
                                                     MTIPixelFormat::unspecified);
}

/// Kernels, fused ones among them, a blur, a resize and a colour.
MTIImage graph(const MTIImage& source) {
    const MTIImage graded =
        pass("MTIOpacity", pass("MTIExposure", source, {{"gain", 1.4f}}), {{"opacity", 0.8f}});
    MTIGaussianBlurFilter blur;
    blur.setInputImage(graded);
    blur.setRadius(4);
    MTIBlendFilter blend(MTIBlendMode::overlay);
    blend.setInputBackgroundImage(source);
    blend.setInputImage(blur.outputImage().imageByApplyingTransform(CGAffineTransformMakeRotation(0.3)));
    return blend.outputImage();
}

TEST_F(NativeContexts, GiveTheSameBytesOnEveryInstructionSetAndAnyNumberOfThreads) {
    // Wide enough for several bands; odd sides.
    const MTIImage image = graph(ramps(1333, 401));
    const Bytes expected = render(image);
    ASSERT_FALSE(expected.empty());
    for (int threads : {1, 2, 5}) {
        options_.threads = threads;
        EXPECT_EQ(render(image), expected) << threads << " threads";
    }
    if (*nativeTargetOfMachine() == NativeTarget::avx512) {
        EXPECT_EQ(*make(NativeTarget::avx2)->renderToBitmap(image).pixels, expected);
    }
}

TEST_F(NativeContexts, FramesOfSeveralContextsOverlapAndKeepApart) {
    const auto first = make(), second = make();
    struct InFlight {
        PixelBuffer buffer;
        std::unique_ptr<RenderTask> task;
    };
    std::vector<InFlight> frames;
    for (int i = 0; i < 20; ++i) {
        const auto gray = PixelBuffer::create(PixelFormat::gray8, 400, 300);
        std::memset(gray.plane(0).data, i * 12, gray.plane(0).rowBytes * 300);
        auto buffer = PixelBuffer::create(PixelFormat::rgba8, 400, 300);
        const MTIImage image = pass("MTIExposure", MTIImage::imageWithPixelBuffer(gray), {{"gain", 1.0f}});
        frames.push_back({buffer, (i % 2 ? first : second)->startRender(image, buffer)});
    }
    std::thread([&] {
        for (auto it = frames.rbegin(); it != frames.rend(); ++it) EXPECT_TRUE(it->task->wait());
    }).join();
    for (int i = 0; i < 20; ++i) EXPECT_EQ(frames[std::size_t(i)].buffer.plane(0).data[4 * 999], i * 12);
    // One that nobody waits for.
    first->startRender(graph(ramps(900, 500)), PixelBuffer::create(PixelFormat::i420, 900, 500));
}

TEST_F(NativeContexts, WritePlanesFromBandsAsFromTheWholePicture) {
    const MTIImage image = graph(ramps(1001, 203));
    const auto context = make();
    const Bitmap whole = context->renderToBitmap(image);
    for (PixelFormat format :
         {PixelFormat::i420, PixelFormat::nv12, PixelFormat::i420Alpha, PixelFormat::rgba8}) {
        const auto rendered = PixelBuffer::create(format, 1001, 203);
        const auto expected = PixelBuffer::create(format, 1001, 203);
        const auto task = context->startRender(image, rendered);
        ASSERT_TRUE(task && task->wait());
        ASSERT_TRUE(convertFromRGBA8(whole.pixels->data(), whole.rowBytes(), expected));
        for (int plane = 0; plane < PixelBuffer::planeCount(format); ++plane) {
            const auto layout = PixelBuffer::planeLayout(format, plane, 1001, 203);
            for (int y = 0; y < layout.height; ++y) {
                const std::size_t at = std::size_t(y) * rendered.plane(plane).rowBytes;
                ASSERT_EQ(std::memcmp(rendered.plane(plane).data + at, expected.plane(plane).data + at,
                                      std::size_t(layout.width * layout.bytesPerSample)),
                          0)
                    << int(format) << ", plane " << plane << ", row " << y;
            }
        }
    }
}

TEST_F(NativeContexts, ShareObjectsThroughTheirFolderAndReplaceWhatIsNone) {
    const MTIImage image = pass("MTIExposure", ramps(40, 30), {{"gain", 1.7f}});
    int compiled = 0;
    const Bytes expected = render(image, &compiled);
    EXPECT_EQ(compiled, 1);
    EXPECT_EQ(render(image, &compiled), expected);
    EXPECT_EQ(compiled, 0);

    std::filesystem::path object;
    for (const auto& entry : std::filesystem::directory_iterator(options_.shaderCacheDirectory))
        if (entry.path().extension() == ".obj") object = entry.path();
    ASSERT_FALSE(object.empty());
    const auto size = std::filesystem::file_size(object);
    const std::vector<std::function<void()>> damages = {
        [&] { std::filesystem::resize_file(object, size / 2); },
        [&] { std::ofstream(object) << "a foreign file"; },
        [&] {
            std::fstream bytes(object, std::ios::in | std::ios::out | std::ios::binary);
            bytes.seekp(std::streamoff(size / 2));
            bytes.put('!').put('?');
        },
        [&] { ::chmod(object.c_str(), 0666); },  // whoever may write it could have it run anything
        [&] { compiler_.itsVersion += "+"; },
    };
    for (const auto& damage : damages) {
        damage();
        EXPECT_EQ(render(image, &compiled), expected);
        EXPECT_EQ(compiled, 1);
        EXPECT_EQ(render(image, &compiled), expected);
        EXPECT_EQ(compiled, 0);
    }
    // A folder that cannot be written is none.
    options_.shaderCacheDirectory = "/proc/nowhere";
    EXPECT_EQ(render(image, &compiled), expected);
    EXPECT_EQ(compiled, 1);
}

TEST_F(NativeContexts, TellInALineWhatTheyCannotRender) {
    std::string error;
    const auto context = make();
    EXPECT_FALSE(context->renderToBitmap({}, &error));
    EXPECT_THAT(error, HasSubstr("nil"));
    EXPECT_THAT(context->renderToFloats({}, &error), IsEmpty());
    const MTIImage image = pass("MTIExposure", ramps(9, 8), {});
    EXPECT_FALSE(context->startRender(image, PixelBuffer::create(PixelFormat::rgba8, 8, 8), &error));
    EXPECT_THAT(error, HasSubstr("size"));
    EXPECT_FALSE(context->startRender(image, PixelBuffer(), &error));
    EXPECT_FALSE(context->startRender(image, MTIVulkanImage{}, {}, &error));
    EXPECT_THAT(error, HasSubstr("host's device"));
    compiler_.compiles = false;
    EXPECT_THAT(render(image, nullptr, &error), IsEmpty());
    EXPECT_EQ(error, "MTIExposure: no compiler today");
}

TEST_F(NativeContexts, DrawPassesPlainWhereWhatFusesThemCannotBeCompiled) {
    const MTIImage image =
        pass("MTIOpacity", pass("MTIExposure", ramps(60, 40), {{"gain", 1.4f}}), {{"opacity", 0.8f}});
    options_.fusion = MTIFusion::off;
    const Bytes plain = render(image);
    options_.fusion = MTIFusion::beforeFirstFrame;
    compiler_.compiles = false;
    std::vector<std::string> lines;
    setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    const auto context = make();
    for (int frame = 0; frame < 3; ++frame) EXPECT_EQ(*context->renderToBitmap(image).pixels, plain);
    setLogSink({});
    EXPECT_THAT(lines, ElementsAre(AllOf(HasSubstr("no compiler today"), HasSubstr("one by one"))));
}

/// From now on no memory of this process becomes executable.
bool forbidExecutableMemory() {
#if defined(__x86_64__)
    constexpr unsigned kMachine = AUDIT_ARCH_X86_64;
#else
    constexpr unsigned kMachine = AUDIT_ARCH_AARCH64;
#endif
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kMachine, 0, 6),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_mprotect, 1, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_mmap, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, PROT_EXEC, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EACCES),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{std::size(steps), steps};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

using NativeContextsDeathTest = NativeContexts;

TEST_F(NativeContextsDeathTest, TellThatMemoryCannotBeMadeExecutable) {
    const MTIImage image = pass("MTIExposure", ramps(9, 8), {});
    const auto renderWithout = [&] {
        std::string error = "it cannot be forbidden";
        if (forbidExecutableMemory()) render(image, nullptr, &error);
        std::fprintf(stderr, "%s\n", error.c_str());
        std::_Exit(0);
    };
    EXPECT_EXIT(renderWithout(), testing::ExitedWithCode(0),
                "^MTIExposure: a kernel cannot be loaded: memory cannot be made executable: Permission denied"
                "|cannot be forbidden");
}

#if !defined(__SANITIZE_THREAD__)  // which has no threads after a fork

TEST_F(NativeContexts, WorkBeforeAndAfterAForkAndInBothProcesses) {
    const MTIImage image = graph(ramps(900, 500));
    auto context = make();
    const Bytes expected = *context->renderToBitmap(image).pixels;
    for (int i = 0; i < 20; ++i) {
        const auto buffer = PixelBuffer::create(PixelFormat::rgba8, 900, 500);
        auto task = context->startRender(image, buffer);
        const ::pid_t child = ::fork();  // the threads are at work
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::alarm(60);
            const bool isRight = render(image) == expected;
            task->wait();  // possibly for what nobody does
            task = nullptr;
            context = nullptr;
#if defined(__SANITIZE_ADDRESS__)
            std::_Exit(isRight ? 0 : 1);  // what the parent's threads held would count as leaks
#else
            std::exit(isRight ? 0 : 1);
#endif
        }
        EXPECT_TRUE(task->wait());
        for (int y = 0; y < 500; ++y)
            ASSERT_EQ(std::memcmp(buffer.plane(0).data + std::size_t(y) * buffer.plane(0).rowBytes,
                                  expected.data() + y * 3600, 3600),
                      0);
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0) << "fork " << i;
    }
}

#endif

TEST_F(NativeContexts, GiveMemoryBackWhenTheSizeChanges) {
    const auto context = make();
    const auto draw = [&](CGSize size) {
        ASSERT_TRUE(context->startRender(MTIImage::initWithColor({1, 0, 0, 1}, false, size))->wait());
    };
    draw({16, 16});
    draw({3000, 2000});
    EXPECT_GE(context->allocatedBytes(), 3000u * 2000 * 4);
    for (int i = 0; i < 20; ++i) draw({16, 17});
    EXPECT_LE(context->allocatedBytes(), 1u << 20);
}

}  // namespace
}  // namespace qv
