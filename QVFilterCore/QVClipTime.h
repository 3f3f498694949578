#pragma once

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

}  // namespace qv
