#include "QVFilterCore/PGCurvesToolValue.h"

#include <algorithm>
#include <cmath>

namespace qv {

double PGCurve::valueAt(double input) const {
    constexpr std::size_t kSpans = kPoints - 1;
    std::array<double, kPoints> y;
    for (std::size_t i = 0; i < kPoints; ++i) y[i] = std::clamp(levels_[i] / 100, 0.0, 1.0);

    // Slopes in units of a span's width.
    std::array<double, kSpans> secant;
    for (std::size_t i = 0; i < kSpans; ++i) secant[i] = y[i + 1] - y[i];
    std::array<double, kPoints> tangent = {secant.front()};
    tangent.back() = secant.back();
    for (std::size_t i = 1; i < kSpans; ++i)
        tangent[i] = secant[i - 1] * secant[i] > 0 ? (secant[i - 1] + secant[i]) / 2 : 0;
    for (std::size_t i = 0; i < kSpans; ++i) {
        if (secant[i] == 0) {
            tangent[i] = tangent[i + 1] = 0;
            continue;
        }
        const double length = std::hypot(tangent[i] / secant[i], tangent[i + 1] / secant[i]);
        if (length <= 3) continue;
        tangent[i] *= 3 / length;
        tangent[i + 1] *= 3 / length;
    }

    const double place = std::clamp(input, 0.0, 1.0) * kSpans;
    const auto i = std::min(std::size_t(place), kSpans - 1);
    const double t = place - double(i), u = 1 - t;
    return u * u * ((1 + 2 * t) * y[i] + t * tangent[i]) +
           t * t * ((3 - 2 * t) * y[i + 1] - u * tangent[i + 1]);
}

}  // namespace qv
