#pragma once

#include <cstdint>

namespace qv {

/// A rational time: value / timescale seconds.
struct CMTime {
    std::int64_t value = 0;      ///< in units of 1 / timescale seconds
    std::int32_t timescale = 1;  ///< units a second; not positive: no time
    bool operator==(const CMTime&) const = default;
};

/// A span of time.
struct CMTimeRange {
    /// Where it begins and how long it is.
    CMTime start, duration;
    bool operator==(const CMTimeRange&) const = default;
};

/// 0 for a time whose scale is not positive.
constexpr double CMTimeGetSeconds(CMTime time) {
    return time.timescale > 0 ? double(time.value) / double(time.timescale) : 0.0;
}

/// Nearest representable time, halves away from zero; a scale below 1 is taken as 1. Seconds out of range
/// give the largest time of their sign, NaN gives 0.
CMTime CMTimeMakeWithSeconds(double seconds, std::int32_t preferredTimescale);

}  // namespace qv
