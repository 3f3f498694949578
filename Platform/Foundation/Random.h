#pragma once

#include <array>
#include <cstdint>

namespace qv {

/// The additive-feedback generator of degree 31 that the C library's `random()` uses, as a value: the same
/// seed gives the same numbers on every system, and no thread disturbs another.
class SeededRandom {
  public:
    /// Starts as `srandom(seed)` does; a seed of 0 counts as 1.
    explicit SeededRandom(std::uint32_t seed);
    /// Next number, 0..2^31-1.
    std::int32_t next();

  private:
    std::array<std::uint32_t, 31> state_;
    int front_ = 3, rear_ = 0;
};

/// Seeding and drawing once: the first number of `SeededRandom(seed)`.
std::int32_t randomFromSeed(std::uint32_t seed);

}  // namespace qv
