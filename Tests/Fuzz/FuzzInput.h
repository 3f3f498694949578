#pragma once

#include <unistd.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <string_view>

/// What the fuzz targets share.
namespace qv::fuzz {

/// Ends the process with a line when what a target claims does not hold; the fuzzer keeps the input.
inline void require(bool holds, std::string_view claim) {
    if (holds) return;
    std::fprintf(stderr, "not so: %.*s\n", int(claim.size()), claim.data());
    std::abort();
}

/// Takes choices from the fuzzer's bytes, first to last; zeros after the end.
class Choices {
  public:
    Choices(const std::uint8_t* bytes, std::size_t size) : bytes_(bytes, size) {}

    int byte() {
        if (bytes_.empty()) return 0;
        const int value = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return value;
    }
    /// 0 … count − 1.
    std::size_t below(std::size_t count) { return std::size_t(byte() << 8 | byte()) % count; }
    /// 0 … 1.
    double fraction() { return byte() / 255.0; }
    /// All that is left.
    std::string_view text() const { return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()}; }

  private:
    std::span<const std::uint8_t> bytes_;
};

/// A file of this process in memory where the machine has such a folder; overwritten by each input.
inline std::string writeInput(std::span<const std::uint8_t> bytes) {
    static const std::string path = [] {
        const std::filesystem::path memory = "/dev/shm";
        const auto folder =
            std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
        static const std::string made = folder / ("qv-fuzz-" + std::to_string(getpid()));
        std::atexit([] { std::remove(made.c_str()); });
        return made;
    }();
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    return path;
}

}  // namespace qv::fuzz
