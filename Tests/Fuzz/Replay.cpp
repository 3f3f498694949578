// fuzz-corpora FOLDER: gives every fuzz target the files of its folder in there. What a target finds ends the
// process, as it does under the fuzzer.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#define QV_FUZZ_TARGET(name) extern "C" int fuzz##name(const std::uint8_t*, std::size_t);
#include "targets.inc"
#undef QV_FUZZ_TARGET

namespace {

struct Target {
    const char* name;
    int (*run)(const std::uint8_t*, std::size_t);
};
constexpr Target kTargets[] = {
#define QV_FUZZ_TARGET(name) {#name, fuzz##name},
#include "targets.inc"
};

}  // namespace

int main(int count, char** arguments) {
    namespace fs = std::filesystem;
    if (count != 2) return 2;
    for (const Target& target : kTargets) {
        std::vector<fs::path> paths;
        for (const auto& entry : fs::directory_iterator(fs::path(arguments[1]) / target.name))
            paths.push_back(entry.path());
        std::ranges::sort(paths);
        for (const fs::path& path : paths) {
            std::printf("%s\n", path.c_str());
            std::fflush(stdout);
            std::ifstream file(path, std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            target.run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        }
        if (paths.empty()) return std::fprintf(stderr, "%s has no corpus\n", target.name), 1;
    }
    return 0;
}
