#include "Platform/ImageGraph/ShaderCompiler/ShaderCache.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "Platform/Foundation/Hash.h"
#include "Platform/Foundation/OutputFile.h"

namespace qv {

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t kMagic = 0x43535651;  // "QVSC"
constexpr std::uint32_t kFormatVersion = 1;
constexpr std::uint32_t kSpirvMagic = 0x07230203;
constexpr std::string_view kSuffix = ".spv";
constexpr std::size_t kMostCodeWords = 4u << 20;

struct Header {
    std::uint32_t magic, formatVersion;
    std::array<std::uint64_t, 2> key;
    std::uint64_t checksum;
    std::uint64_t words;
};

std::array<std::uint64_t, 2> keyOf(std::string_view text, std::string_view compiler) {
    const std::string backwards(text.rbegin(), text.rend());
    return {hashOf(text, hashOf(compiler)), hashOf(backwards, hashOf(compiler) + text.size())};
}

std::uint64_t checksumOf(const std::vector<std::uint32_t>& code) {
    return hashOfMemory(code.data(), code.size());
}

fs::path fileOf(const std::string& directory, const std::array<std::uint64_t, 2>& key) {
    return fs::path(directory) / fmt::format("{:016x}{:016x}{}", key[0], key[1], kSuffix);
}

/// Whether a file of this name comes from here; what else lies in the folder is not touched.
bool isOurs(const fs::path& path) {
    constexpr std::size_t kDigits = 32;
    return path.filename().string().find_first_not_of("0123456789abcdef") == kDigits;
}

}  // namespace

std::vector<std::uint32_t> ShaderCache::load(std::string_view text, std::string_view compiler) const {
    if (directory_.empty()) return {};
    const auto key = keyOf(text, compiler);
    const fs::path path = fileOf(directory_, key);
    std::error_code ignored;
    if (!fs::is_regular_file(path, ignored)) return {};  // opening another kind might block
    std::ifstream file(path, std::ios::binary);
    Header header{};
    if (!file.read(reinterpret_cast<char*>(&header), sizeof header)) return {};
    if (header.magic != kMagic || header.formatVersion != kFormatVersion || header.key != key) return {};
    if (header.words == 0 || header.words > kMostCodeWords) return {};
    std::vector<std::uint32_t> code(header.words);
    if (!file.read(reinterpret_cast<char*>(code.data()), std::streamsize(code.size() * sizeof code[0])))
        return {};
    if (file.peek() != std::ifstream::traits_type::eof()) return {};
    if (code.front() != kSpirvMagic || checksumOf(code) != header.checksum) return {};
    fs::last_write_time(path, fs::file_time_type::clock::now(), ignored);  // the longest unused goes first
    return code;
}

void ShaderCache::store(std::string_view text, std::string_view compiler,
                        const std::vector<std::uint32_t>& code) {
    if (directory_.empty() || code.empty()) return;
    std::error_code failure;
    fs::create_directories(directory_, failure);
    const auto key = keyOf(text, compiler);
    const Header header{kMagic, kFormatVersion, key, checksumOf(code), code.size()};
    const fs::path path = fileOf(directory_, key);
    if (fs::exists(path, failure) && !fs::is_regular_file(path, failure)) return;
    std::string file(reinterpret_cast<const char*>(&header), sizeof header);
    file.append(reinterpret_cast<const char*>(code.data()), code.size() * sizeof code[0]);
    if (!writeWholeFile(path.string(), file)) return;
    std::scoped_lock lock(mutex_);
    bytes_ += file.size();
    if (!counted_ || bytes_ > mostBytes_) trim();
}

void ShaderCache::trim() {
    struct File {
        fs::path path;
        fs::file_time_type used;
        std::uint64_t bytes;
    };
    constexpr auto kAbandoned = std::chrono::hours(1);
    std::vector<File> files;
    std::error_code failure;
    bytes_ = 0;
    counted_ = true;
    const auto now = fs::file_time_type::clock::now();
    for (fs::directory_iterator entry(directory_, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        std::error_code ignored;
        const fs::path& path = entry->path();
        if (!isOurs(path)) continue;
        const File file{path, fs::last_write_time(path, ignored), entry->file_size(ignored)};
        if (ignored) continue;  // another process has removed it
        if (OutputFile::isTemporaryName(path.filename().string())) {
            if (now - file.used > kAbandoned) fs::remove(path, ignored);
        } else if (path.extension() == kSuffix) {
            bytes_ += file.bytes;
            files.push_back(file);
        }
    }
    if (bytes_ <= mostBytes_) return;
    std::ranges::sort(files, {}, &File::used);
    for (const File& file : files) {
        if (bytes_ <= mostBytes_ / 4 * 3) break;
        std::error_code ignored;
        if (fs::remove(file.path, ignored)) bytes_ -= file.bytes;
    }
}

}  // namespace qv
