#include "Platform/ImageGraph/ShaderCompiler/ShaderCache.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <string>
#include <type_traits>

#include "Platform/Foundation/Hash.h"
#include "Platform/Foundation/OutputFile.h"

namespace qv {

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t kMagic = 0x43535651;  // "QVSC"
constexpr std::uint32_t kFormatVersion = 1;
constexpr std::uint32_t kSpirvMagic = 0x07230203;
constexpr std::uint64_t kMostFileBytes = 16u << 20;

/// Files by what they are made of: words are SPIR-V, bytes are an object.
template <typename Unit>
constexpr std::string_view kSuffix = ".spv";
template <>
constexpr std::string_view kSuffix<std::byte> = ".obj";

struct Header {
    std::uint32_t magic, formatVersion;
    std::array<std::uint64_t, 2> key;
    std::uint64_t checksum;
    std::uint64_t units;
};

std::array<std::uint64_t, 2> keyOf(std::string_view text, std::string_view compiler) {
    const std::string backwards(text.rbegin(), text.rend());
    return {hashOf(text, hashOf(compiler)), hashOf(backwards, hashOf(compiler) + text.size())};
}

template <typename Unit>
fs::path fileOf(const std::string& directory, const std::array<std::uint64_t, 2>& key) {
    return fs::path(directory) / fmt::format("{:016x}{:016x}{}", key[0], key[1], kSuffix<Unit>);
}

/// A descriptor that closes itself.
struct Descriptor {
    explicit Descriptor(const fs::path& path)
        : number(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~Descriptor() {
        if (number >= 0) ::close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    const int number;
};

bool readAll(int descriptor, void* to, std::size_t bytes) {
    for (auto* next = static_cast<char*>(to); bytes > 0;) {
        const ssize_t count = ::read(descriptor, next, bytes);
        if (count <= 0) return false;
        next += count;
        bytes -= std::size_t(count);
    }
    return true;
}

/// Whether a file of this name comes from here; what else lies in the folder is not touched.
bool isOurs(const fs::path& path) {
    constexpr std::size_t kDigits = 32;
    return path.filename().string().find_first_not_of("0123456789abcdef") == kDigits;
}

}  // namespace

template <typename Unit>
std::vector<Unit> ShaderCache::loadUnits(std::string_view text, std::string_view compiler) const {
    if (directory_.empty()) return {};
    const auto key = keyOf(text, compiler);
    const fs::path path = fileOf<Unit>(directory_, key);
    const Descriptor file(path);
    struct stat status {};
    if (file.number < 0 || ::fstat(file.number, &status) != 0 || !S_ISREG(status.st_mode)) return {};
    const bool isOursAlone = status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    if (std::is_same_v<Unit, std::byte> && !isOursAlone) return {};
    Header header{};
    if (!readAll(file.number, &header, sizeof header)) return {};
    if (header.magic != kMagic || header.formatVersion != kFormatVersion || header.key != key) return {};
    if (header.units == 0 || header.units > kMostFileBytes / sizeof(Unit)) return {};
    if (std::uint64_t(status.st_size) != sizeof header + header.units * sizeof(Unit)) return {};
    std::vector<Unit> units(header.units);
    if (!readAll(file.number, units.data(), units.size() * sizeof(Unit))) return {};
    if (hashOfMemory(units.data(), units.size()) != header.checksum) return {};
    std::error_code ignored;
    fs::last_write_time(path, fs::file_time_type::clock::now(), ignored);  // the longest unused goes first
    return units;
}

template <typename Unit>
void ShaderCache::storeUnits(std::string_view text, std::string_view compiler,
                             const std::vector<Unit>& units) {
    if (directory_.empty() || units.empty()) return;
    std::error_code failure;
    fs::create_directories(directory_, failure);
    const auto key = keyOf(text, compiler);
    const Header header{kMagic, kFormatVersion, key, hashOfMemory(units.data(), units.size()), units.size()};
    const fs::path path = fileOf<Unit>(directory_, key);
    if (fs::exists(path, failure) && !fs::is_regular_file(path, failure)) return;
    std::string file(reinterpret_cast<const char*>(&header), sizeof header);
    file.append(reinterpret_cast<const char*>(units.data()), units.size() * sizeof(Unit));
    if (!writeWholeFile(path.string(), file)) return;
    if (std::is_same_v<Unit, std::byte>)
        fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write, failure);
    std::scoped_lock lock(mutex_);
    bytes_ += file.size();
    if (!counted_ || bytes_ > mostBytes_) trim();
}

std::vector<std::uint32_t> ShaderCache::load(std::string_view text, std::string_view compiler) const {
    auto code = loadUnits<std::uint32_t>(text, compiler);
    if (!code.empty() && code.front() != kSpirvMagic) code.clear();
    return code;
}

void ShaderCache::store(std::string_view text, std::string_view compiler,
                        const std::vector<std::uint32_t>& code) {
    storeUnits(text, compiler, code);
}

std::vector<std::byte> ShaderCache::loadObject(std::string_view recipe, std::string_view compiler) const {
    return loadUnits<std::byte>(recipe, compiler);
}

void ShaderCache::storeObject(std::string_view recipe, std::string_view compiler,
                              const std::vector<std::byte>& object) {
    storeUnits(recipe, compiler, object);
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
        } else if (path.extension() == kSuffix<std::uint32_t> || path.extension() == kSuffix<std::byte>) {
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
