// A file in the cache of compiled programs. Where the first byte is even, key, length and checksum are made
// right, so that only the code is the fuzzer's.

#include <cstring>
#include <vector>

#include "Platform/ImageGraph/ShaderCompiler/ShaderCache.h"
#include "Tests/Fuzz/FuzzInput.h"

using namespace qv;
namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    constexpr std::string_view kText = "text", kCompiler = "compiler";
    const std::vector<std::uint32_t> good{0x07230203, 1, 2, 3};
    static const fs::path folder = fs::temp_directory_path() / ("qv-fuzz-cache-" + std::to_string(getpid()));
    static const bool removedAtExit = std::atexit([] { fs::remove_all(folder); }) == 0;
    fuzz::require(removedAtExit, "the folder is removed at the end");
    ShaderCache cache(folder);
    cache.store(kText, kCompiler, good);
    const fs::path path = fs::directory_iterator(folder)->path();

    std::vector<char> file(data + 1, data + size);
    constexpr std::size_t kSumAt = 24, kWordsAt = 32, kHeader = 40;
    if (data[0] % 2 == 0) {
        std::vector<char> header(kHeader);
        std::ifstream(path, std::ios::binary).read(header.data(), kHeader);
        std::uint64_t sum = 0xCBF29CE484222325;
        for (char c : file) sum = (sum ^ std::uint8_t(c)) * 0x100000001B3;
        const std::uint64_t words = file.size() / 4;
        std::memcpy(header.data() + kSumAt, &sum, sizeof sum);
        std::memcpy(header.data() + kWordsAt, &words, sizeof words);
        file.insert(file.begin(), header.begin(), header.end());
    }
    std::ofstream(path, std::ios::binary | std::ios::trunc).write(file.data(), std::streamsize(file.size()));
    const std::vector<std::uint32_t> code = cache.load(kText, kCompiler);
    fuzz::require(code.empty() || code[0] == good[0], "only SPIR-V is taken");
    fuzz::require(code.size() * 4 + kHeader == file.size() || code.empty(), "only whole files are taken");
    cache.store(kText, kCompiler, good);
    fuzz::require(cache.load(kText, kCompiler) == good, "a damaged file is replaced");
    return 0;
}
