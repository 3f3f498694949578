#pragma once

#include <array>
#include <optional>

#include "Platform/Geometry/UIColor.h"

namespace qv {

/// One stop of the ramp that a line is coloured from.
struct QVBezierLineColor {
    /// A stop as a colour buffer holds it: 32 bytes.
    struct Record {
        std::array<float, 4> color{};    ///< red, green, blue, alpha; not premultiplied
        float t = 0;                     ///< place along the ramp
        std::array<float, 3> padding{};  ///< 0
        bool operator==(const Record&) const = default;
    };

    UIColor color;  ///< of the stop
    float t = 0;    ///< place along the ramp: 0 in the middle of the line, 1 at its rim

    /// The stop in single precision.
    Record bezierLineColor() const;
    bool operator==(const QVBezierLineColor&) const = default;
};

/// A stop. Stops the program, with a line in the log, for no colour and for a `t` outside 0..1.
QVBezierLineColor QVBezierLineColorMake(const std::optional<UIColor>& color, float t);

}  // namespace qv
