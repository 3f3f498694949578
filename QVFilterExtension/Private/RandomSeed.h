#pragma once

#include <cmath>
#include <cstdint>

#include "Platform/Foundation/Random.h"

namespace qv {

/// The whole part of a number as a seed, modulo 2³², as the C library takes it: times of any size and sign
/// go on giving new seeds. What is not finite gives 0.
inline std::uint32_t randomSeedFromDouble(double value) {
    constexpr double kSeeds = 4294967296.0;
    if (!std::isfinite(value)) return 0;
    const double rest = std::fmod(std::trunc(value), kSeeds);
    return std::uint32_t(rest < 0 ? rest + kSeeds : rest);
}

/// A draw from a seed as 0..1, in single precision.
inline float randomUnitFromSeed(std::uint32_t seed) {
    return float(randomFromSeed(seed) % 10000000) / 9999999.0f;
}

}  // namespace qv
