#include "QVFilterCore/QV_CubicBezier.h"

#include <algorithm>

namespace qv {

namespace {

/// A cubic Bézier coordinate with end values 0 and 1.
double coordinate(double t, double first, double second) {
    const double u = 1 - t;
    return 3 * u * u * t * first + 3 * u * t * t * second + t * t * t;
}

}  // namespace

double QV_CubicBezier(double progress, double x1, double y1, double x2, double y2) {
    if (!(progress > 0)) return 0;
    if (progress >= 1) return 1;
    x1 = std::clamp(x1, 0.0, 1.0);
    x2 = std::clamp(x2, 0.0, 1.0);
    // x(t) is monotonic, so bisection always converges; 60 halvings exhaust a double.
    double low = 0, high = 1;
    for (int i = 0; i < 60 && low < high; ++i) {
        const double middle = 0.5 * (low + high);
        (coordinate(middle, x1, x2) < progress ? low : high) = middle;
    }
    return coordinate(0.5 * (low + high), y1, y2);
}

}  // namespace qv
