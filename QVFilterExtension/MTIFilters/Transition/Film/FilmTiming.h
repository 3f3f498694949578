#pragma once

namespace qv {

/// How far `progress` has come from one moment to another, 0..1.
inline float wayBetween(double progress, double from, double to) {
    const double way = (progress - from) / (to - from);
    return float(way < 0 ? 0 : way > 1 ? 1 : way);
}

}  // namespace qv
