#pragma once

namespace qv {

/// Easing by the cubic Bézier from (0, 0) to (1, 1) with the control points (x1, y1) and (x2, y2), as in CSS
/// timing functions: y at the curve's x = `progress`. x1 and x2 are clamped to 0..1 so that the curve is a
/// function; `progress` is clamped to 0..1 and both ends are exact. A progress that is not a number gives 0.
double QV_CubicBezier(double progress, double x1, double y1, double x2, double y2);

}  // namespace qv
