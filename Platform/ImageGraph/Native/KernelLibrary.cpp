#include "Platform/ImageGraph/Native/KernelLibrary.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <fstream>
#include <iterator>

#include "Platform/Foundation/Hash.h"

namespace qv {

static_assert(std::endian::native == std::endian::little, "a library is written in the machine's byte order");

namespace {

// A library is: header, compiler version, entries by rising key, objects, each aligned as linkers want it.
struct Header {
    std::uint32_t magic, formatVersion;
    std::uint32_t versionBytes, count;
    std::uint64_t checksum;  ///< of version and entries
};
constexpr std::uint32_t kMagic = 0x4C4B5651;  // "QVKL"
constexpr std::uint32_t kFormatVersion = 2;
constexpr std::uint64_t kObjectAlignment = 16;

constexpr std::uint64_t aligned(std::uint64_t offset) {
    return (offset + kObjectAlignment - 1) / kObjectAlignment * kObjectAlignment;
}

std::uint64_t checksumOf(std::span<const std::byte> bytes) {
    return hashOfMemory(bytes.data(), bytes.size());
}

template <class Value>
void append(std::vector<std::byte>& bytes, const Value* values, std::size_t count) {
    const std::size_t before = bytes.size();
    bytes.resize(before + count * sizeof(Value));
    if (count > 0) std::memcpy(bytes.data() + before, values, count * sizeof(Value));
}

}  // namespace

struct KernelLibrary::Entry {
    std::uint64_t key, checksum;
    std::uint64_t offset, size;
};

std::uint64_t kernelKey(const ShaderFunction& function, std::span<const TextureFormat> inputs,
                        TextureFormat output) {
    std::uint64_t hash = hashOf(function.source, hashOf(function.name));
    hash = hashOfMemory(inputs.data(), inputs.size(), hash);
    return hashOfMemory(&output, 1, hash);
}

std::string KernelLibrary::fileName(NativeTarget target) {
    std::string name = "native-";
    for (const char* letter = nativeTargetName(target); *letter; ++letter) {
        if (*letter != '-') name += char(*letter >= 'A' && *letter <= 'Z' ? *letter + 'a' - 'A' : *letter);
    }
    return name + ".kernels";
}

std::shared_ptr<const KernelLibrary> KernelLibrary::open(const std::string& path,
                                                         std::string_view compilerVersion,
                                                         std::string* error) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file ? std::streamoff(file.tellg()) : -1;
    std::vector<std::byte> bytes(size > 0 ? std::size_t(size) : 0);
    if (size < 0 || !file.seekg(0).read(reinterpret_cast<char*>(bytes.data()), size)) {
        if (error) *error = "cannot read '" + path + "'";
        return nullptr;
    }
    auto library = parse(std::move(bytes), compilerVersion, error);
    if (!library && error) *error = "'" + path + "': " + *error;
    return library;
}

std::shared_ptr<const KernelLibrary> KernelLibrary::parse(std::vector<std::byte> bytes,
                                                          std::string_view compilerVersion,
                                                          std::string* error) {
    const auto refuse = [&](const char* cause) {
        if (error) *error = cause;
        return nullptr;
    };
    Header header{};
    if (bytes.size() < sizeof header) return refuse("not a library of kernels");
    std::memcpy(&header, bytes.data(), sizeof header);
    if (header.magic != kMagic || header.formatVersion != kFormatVersion) {
        return refuse("not a library of kernels");
    }
    const std::size_t listed = header.versionBytes + std::uint64_t(header.count) * sizeof(Entry);
    const std::span<const std::byte> rest = std::span<const std::byte>(bytes).subspan(sizeof header);
    if (listed > rest.size() || checksumOf(rest.first(listed)) != header.checksum) return refuse("damaged");
    const std::string_view version(reinterpret_cast<const char*>(rest.data()), header.versionBytes);
    if (version != compilerVersion) return refuse("made by another version of the compiler");

    auto library = std::make_shared<KernelLibrary>();
    library->bytes_ = std::move(bytes);
    library->index_ = sizeof header + header.versionBytes;
    library->count_ = header.count;
    return library;
}

std::span<const std::byte> KernelLibrary::object(std::uint64_t key) const {
    const auto entryAt = [&](std::size_t i) {
        Entry entry;
        std::memcpy(&entry, bytes_.data() + index_ + i * sizeof entry, sizeof entry);
        return entry;
    };
    std::size_t first = 0, last = count_;
    while (first < last) {
        const std::size_t middle = (first + last) / 2;
        if (entryAt(middle).key < key) {
            first = middle + 1;
        } else {
            last = middle;
        }
    }
    if (first == count_) return {};
    const Entry entry = entryAt(first);
    if (entry.key != key || entry.offset > bytes_.size() || entry.size > bytes_.size() - entry.offset)
        return {};
    const std::span<const std::byte> object(bytes_.data() + entry.offset, entry.size);
    return checksumOf(object) == entry.checksum ? object : std::span<const std::byte>();
}

std::vector<std::byte> KernelLibrary::serialize(
    std::string_view compilerVersion, const std::map<std::uint64_t, std::vector<std::byte>>& objectsByKey) {
    std::vector<std::byte> list;
    append(list, compilerVersion.data(), compilerVersion.size());
    std::uint64_t offset = sizeof(Header) + list.size() + objectsByKey.size() * sizeof(Entry);
    for (const auto& [key, object] : objectsByKey) {
        offset = aligned(offset);
        const Entry entry{key, checksumOf(object), offset, object.size()};
        append(list, &entry, 1);
        offset += object.size();
    }
    const Header header{kMagic, kFormatVersion, std::uint32_t(compilerVersion.size()),
                        std::uint32_t(objectsByKey.size()), checksumOf(list)};
    std::vector<std::byte> bytes;
    append(bytes, &header, 1);
    append(bytes, list.data(), list.size());
    for (const auto& [key, object] : objectsByKey) {
        bytes.resize(aligned(bytes.size()));
        append(bytes, object.data(), object.size());
    }
    return bytes;
}

}  // namespace qv
