#include "QVFilterExtension/MTIFilters/Bezier/QVBezierLineColor.h"

#include <cstdlib>

#include "Platform/Foundation/Log.h"

namespace qv {

QVBezierLineColor::Record QVBezierLineColor::bezierLineColor() const {
    return {{float(color.red()), float(color.green()), float(color.blue()), float(color.alpha())}, t};
}

QVBezierLineColor QVBezierLineColorMake(const std::optional<UIColor>& color, float t) {
    if (!(color && t >= 0.0f && t <= 1.0f)) {
        logLine(
            "QVBezierLineColorMake, QVBezierLineColor:17: assertion failed: col != nil && t>=0.0 && t<=1.0");
        std::abort();
    }
    return {*color, t};
}

}  // namespace qv
