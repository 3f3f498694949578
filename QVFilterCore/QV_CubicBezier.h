#pragma once

namespace qv {

/// Easing by the cubic Bézier from (0, 0) to (1, 1) with the control points (x1, y1) and (x2, y2), as in CSS
/// timing functions: y at the curve's x = `progress`. The curve is drawn as 49 straight pieces of equal steps
/// of its parameter, so it lies within some thousandths of the smooth one; both ends are exact, and what lies
/// beyond them is as they are. x1 and x2 lie in 0..1, so that the curve is a function. A progress that is not
/// a number gives 0.
double QV_CubicBezier(double progress, double x1, double y1, double x2, double y2);

}  // namespace qv
