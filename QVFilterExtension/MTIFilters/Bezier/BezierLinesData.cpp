#include "QVFilterExtension/MTIFilters/Bezier/BezierLinesData.h"

namespace qv {

namespace {

void appendCurves(const QVOutline& points, std::vector<LineSegment>& curves) {
    const std::size_t count = points.size();
    for (std::size_t i = 0; i < count; ++i) {
        const CGPoint &before = points[(count + i - 1) % count], &point = points[i],
                      &after = points[(i + 1) % count];
        curves.push_back({{float((point.x + before.x) * 0.5), float((point.y + before.y) * 0.5)},
                          {float((point.x + after.x) * 0.5), float((point.y + after.y) * 0.5)},
                          {float(point.x), float(point.y)}});
    }
}

}  // namespace

std::vector<LineSegment> BezierLinesDataWithPoints(const QVOutline& points) {
    return BezierLinesDataWithPointsArray({points});
}

std::vector<LineSegment> BezierLinesDataWithPointsArray(const QVOutlineSet& pointsArray) {
    std::vector<LineSegment> curves;
    for (const QVOutline& points : pointsArray) appendCurves(points, curves);
    return curves;
}

}  // namespace qv
