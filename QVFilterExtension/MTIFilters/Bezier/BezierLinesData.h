#pragma once

#include <vector>

#include "Platform/ImageGraph/LinePass.h"
#include "QVALObjectContour/QVObjectContour.h"

namespace qv {

/// The smooth closed line of an outline, as a buffer of curves: for each point the curve between the middles
/// of the edges on both its sides, which bends towards the point. Computed in double precision, stored in
/// single.
std::vector<LineSegment> BezierLinesDataWithPoints(const QVOutline& points);
/// The curves of each outline in turn.
std::vector<LineSegment> BezierLinesDataWithPointsArray(const QVOutlineSet& pointsArray);

}  // namespace qv
