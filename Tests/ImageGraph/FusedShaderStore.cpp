// Programs of fused passes in memory and on disk.

#include "Platform/ImageGraph/Private/FusedShaderStore.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "Platform/ImageGraph/MTIKernel.h"
#include "Tests/Media/TemporaryFolder.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using testing::IsEmpty;

/// A pass that raises and fades, or the other way round.
FusedShape shape(bool fadesFirst) {
    MTIImage image =
        MTIImage::imageWithBitmap(test::makeBitmap(4, 4, [](int, int) { return test::Pixel{}; }));
    for (const char* function :
         {fadesFirst ? "MTIOpacity" : "MTIExposure", fadesFirst ? "MTIExposure" : "MTIOpacity"})
        image =
            stockKernel(function)->applyToInputImages({image}, {}, image.size(), MTIPixelFormat::unspecified);
    return fusePlan(planRender(image, {.processor = true})).passes.front().shape;
}

TEST(FusedShaderStore, SharesProgramsThroughItsFolderAndReplacesWhatIsNoProgram) {
    const TemporaryFolder temporary;
    const std::string folder = temporary / "a/folder";
    const FusedShape one = shape(true);
    const auto make = [&](int expectedCompilations) {
        FusedShaderStore store(folder);
        EXPECT_FALSE(store.find(one).isKnown);
        const auto program = store.make(one);
        EXPECT_EQ(store.compiledCount(), expectedCompilations);
        EXPECT_EQ(store.make(one), program);
        EXPECT_EQ(store.find(one).program, program);
        return program ? program->code : std::vector<std::uint32_t>();
    };
    const auto code = make(1);
    ASSERT_FALSE(code.empty());
    EXPECT_EQ(make(0), code);

    std::filesystem::path file;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) file = entry.path();
    const auto size = std::filesystem::file_size(file);
    const std::vector<std::function<void()>> damages = {
        [&] { std::filesystem::resize_file(file, size - 4); },
        [&] { std::filesystem::resize_file(file, size + 4); },
        [&] { std::ofstream(file) << "a foreign file"; },
        [&] { std::ofstream(file, std::ios::trunc).flush(); },
        [&] {
            std::fstream bytes(file, std::ios::in | std::ios::out | std::ios::binary);
            bytes.seekp(std::streamoff(size / 2));
            bytes.put('!');
        },
    };
    for (const auto& damage : damages) {
        damage();
        EXPECT_EQ(make(1), code);
        EXPECT_EQ(make(0), code);
    }
    // What cannot be replaced is done without.
    std::filesystem::remove(file);
    std::filesystem::create_directories(file / "kept");
    EXPECT_EQ(make(1), code);
    EXPECT_EQ(make(1), code);
    EXPECT_TRUE(std::filesystem::exists(file / "kept"));
    // Another shape is another program; a folder that cannot be is none.
    FusedShaderStore store(folder), homeless("/proc/nowhere");
    EXPECT_NE(store.make(shape(false))->code, code);
    EXPECT_EQ(store.compiledCount(), 1);
    EXPECT_EQ(homeless.make(one)->code, code);
}

TEST(ShaderCache, StaysUnderItsBoundAndSharesAFolder) {
    const TemporaryFolder temporary;
    const std::string folder = temporary / "a/folder";
    const auto codeOf = [](int i) {
        std::vector<std::uint32_t> code(1000, std::uint32_t(i));
        code[0] = 0x07230203;
        return code;
    };
    const auto storeMany = [&](int first) {
        ShaderCache cache(folder, 100'000);
        for (int i = first; i < first + 60; ++i) {
            cache.store(std::to_string(i), "compiler", codeOf(i));
            const auto loaded = cache.load(std::to_string(i), "compiler");
            // Whole, or already gone.
            EXPECT_TRUE(loaded.empty() || loaded == codeOf(i)) << i;
        }
    };
    std::filesystem::create_directories(folder);
    writeBytes(folder + "/somebody's.spv", std::string(150'000, '!'));
    std::thread other([&] { storeMany(0); });
    storeMany(30);
    other.join();
    std::uint64_t bytes = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) bytes += entry.file_size();
    // Each may overlook what the other adds, and both may make room at once.
    EXPECT_EQ(readBytes(folder + "/somebody's.spv").size(), 150'000u);
    EXPECT_LE(bytes, 350'000u);
    EXPECT_GE(bytes, 170'000u);
    ShaderCache cache(folder);
    cache.store("last", "compiler", codeOf(1));
    EXPECT_EQ(cache.load("last", "compiler"), codeOf(1));
    EXPECT_THAT(cache.load("last", "another compiler"), IsEmpty());
}

}  // namespace
}  // namespace qv
