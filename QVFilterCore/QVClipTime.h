#pragma once

#include <cmath>

namespace qv {

/// How long the shutter of the camera that films an animation is open: what moves is smeared as far as it
/// moves in this time. Half a frame of cinema.
inline constexpr double kShutterSeconds = 1.0 / 48;

/// Position of `time` between `start` and `end`, clamped to 0..1; 0 for a span without length or times that
/// are not numbers.
constexpr double clipProgress(double time, double start, double end) {
    const double fraction = end > start ? (time - start) / (end - start) : 0.0;
    return fraction > 0 ? (fraction < 1 ? fraction : 1.0) : 0.0;
}

/// A place in time that is cut into periods of one length, the first from 0 on.
struct QVTimeCycle {
    double number = 0;     ///< whole periods since time 0; below 0 before it
    double part = 0;       ///< of the period that runs, 0 up to 1
    bool isValid = false;  ///< false, with zeros, where there is no such place

    /// The number wrapped at 4096 and never negative, for random draws in shaders.
    float wrappedNumber() const { return float(number - 4096 * std::floor(number / 4096)); }
};

/// Where `seconds` lies in periods of `period` seconds; invalid for a time that is not finite or a period
/// that is not positive.
inline QVTimeCycle timeCycleAt(double seconds, double period) {
    const double periods = seconds / period;
    if (!(period > 0) || !std::isfinite(periods)) return {};
    const double number = std::floor(periods);
    return {number, periods - number, true};
}

}  // namespace qv
