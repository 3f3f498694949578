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

/// Units a second of the ranges made below: whole frames of the usual rates are whole numbers of it.
inline constexpr std::int32_t kCMTimeRangeTimescale = 90000;

/// A range given in seconds. Random choices are made from a range's values, not from its seconds, so whoever
/// has only seconds makes it here: then a range looks the same whichever way it came.
CMTimeRange CMTimeRangeMakeWithSeconds(double start, double duration);

}  // namespace qv
