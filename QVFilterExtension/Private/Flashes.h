#pragma once

#include <cmath>
#include <cstdint>

#include "Platform/Foundation/Random.h"
#include "QVFilterExtension/Private/RandomSeed.h"

namespace qv {

/// One life of a thing that comes and goes again and again: a pure function of the thing's number and the
/// time.
class FlashLife {
  public:
    /// `index` tells things apart; each life lasts `seconds`, and begins at the thing's own time.
    FlashLife(std::uint32_t index, double time, double seconds)
        : FlashLife(index, time / seconds + fraction(index * 0.618033988749895)) {}

    /// 0..1 of the life that has passed.
    double age() const { return age_; }
    /// The next of this life's random numbers, 0 up to 1.
    double next() { return double(random_.next()) / 2147483648.0; }

  private:
    FlashLife(std::uint32_t index, double lives)
        : age_(fraction(lives)),
          random_(randomSeedFromDouble(std::floor(lives)) * 2654435761u + index * 40503u) {}

    static double fraction(double value) { return value - std::floor(value); }

    double age_;
    SeededRandom random_;
};

}  // namespace qv
