#pragma once

#include <cstdint>
#include <limits>

namespace qv {

/// The whole part of a number as a seed, for times of any size and sign: what lies outside 0..2³²−1 gives
/// the nearest end, a value that is not a number 0.
constexpr std::uint32_t randomSeedFromDouble(double value) {
    constexpr std::uint32_t kLargest = std::numeric_limits<std::uint32_t>::max();
    if (!(value > 0)) return 0;
    return value < double(kLargest) ? std::uint32_t(value) : kLargest;
}

}  // namespace qv
