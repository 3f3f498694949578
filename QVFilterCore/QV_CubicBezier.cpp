#include "QVFilterCore/QV_CubicBezier.h"

#include <cmath>
#include <limits>

namespace qv {

namespace {

constexpr int kLastSample = 49;

/// A cubic Bézier coordinate with end values 0 and 1.
double coordinate(double t, double first, double second) {
    const double u = 1 - t;
    return 3 * u * u * t * first + 3 * u * t * t * second + t * t * t;
}

}  // namespace

double QV_CubicBezier(double progress, double x1, double y1, double x2, double y2) {
    const auto x = [&](int i) { return coordinate(double(i) / kLastSample, x1, x2); };
    const auto y = [&](int i) { return coordinate(double(i) / kLastSample, y1, y2); };

    int best = 0;
    double bestDistance = std::numeric_limits<float>::max();
    for (int i = 0; i <= kLastSample; ++i) {
        const double distance = std::abs(x(i) - progress);
        if (!(distance < bestDistance)) break;
        best = i;
        bestDistance = distance;
    }
    const int other = progress < x(best) ? best - 1 : best + 1;
    if (other < 0 || other > kLastSample) return y(best);
    const double width = x(other) - x(best);
    if (!(std::abs(width) > std::numeric_limits<float>::epsilon()) || std::isnan(progress)) return y(best);
    return y(best) + (progress - x(best)) * (y(other) - y(best)) / width;
}

}  // namespace qv
