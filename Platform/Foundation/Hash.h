#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qv {

/// The hash of nothing.
inline constexpr std::uint64_t kHashStart = 0xCBF29CE484222325;

/// FNV-1a, 64 bits: the same for the same bytes on every machine and in every run. Names files and tells of
/// damage; no protection against intent. `start` continues an earlier hash.
constexpr std::uint64_t hashOf(std::string_view bytes, std::uint64_t start = kHashStart) {
    for (const char byte : bytes) start = (start ^ std::uint8_t(byte)) * 0x100000001B3;
    return start;
}

/// The same of `count` values in memory, which have no padding.
template <typename Value>
std::uint64_t hashOfMemory(const Value* values, std::size_t count, std::uint64_t start = kHashStart) {
    return hashOf({reinterpret_cast<const char*>(values), count * sizeof(Value)}, start);
}

}  // namespace qv
