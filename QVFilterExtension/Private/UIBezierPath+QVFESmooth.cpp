#include "QVFilterExtension/Private/UIBezierPath+QVFESmooth.h"

#include <cmath>

namespace qv {

namespace {

/// How close to the border a point counts as on it, and how far the last pixel's near side is from the far
/// edge.
constexpr double kBand = 1.1, kLastPixel = 1.0;
constexpr double kSmoothMinLength = 6.0;

CGPoint operator-(const CGPoint& a, const CGPoint& b) {
    return {a.x - b.x, a.y - b.y};
}

CGPoint middle(const CGPoint& a, const CGPoint& b) {
    return {(a.x + b.x) * 0.5, (a.y + b.y) * 0.5};
}

/// Each of the outlines through an operation on one.
template <typename Operation>
QVOutlineSet eachOf(const QVOutlineSet& outlines, Operation operation) {
    QVOutlineSet result;
    result.reserve(outlines.size());
    for (const QVOutline& outline : outlines) result.push_back(operation(outline));
    return result;
}

}  // namespace

bool isPointOnEdge(const CGPoint& point, const CGRect& rect) {
    return point.x <= rect.minX() + kBand || point.x >= (rect.maxX() - kLastPixel) - kBand ||
           point.y <= rect.minY() + kBand || point.y >= (rect.maxY() - kLastPixel) - kBand;
}

bool isPointOnVertex(const CGPoint& point, const CGRect& rect) {
    const auto isNearSide = [&](double coordinate) {
        return std::abs(coordinate - rect.minX()) < kBand ||
               std::abs(coordinate - (rect.maxX() - kLastPixel)) < kBand;
    };
    return isNearSide(point.x) && isNearSide(point.y);
}

CGPoint expandPoint(const CGPoint& point, const CGRect&, double expandLength, const CGPoint& directVector) {
    const float x = float(directVector.x), y = float(directVector.y);
    const float squared = x * x + y * y;
    if (!(squared > 0)) return point;
    const float scale = 1.0f / std::sqrt(squared);
    return {point.x + double(x * scale) * expandLength, point.y + double(y * scale) * expandLength};
}

QVOutline expandPoints(const QVOutline& points, const CGRect& originRect, double expandLength) {
    if (CGRectIsEmpty(originRect) || expandLength <= 0) return points;
    QVOutline result;
    const std::size_t n = points.size();
    for (std::size_t i = 0; i < n; ++i) {
        const CGPoint &current = points[i], &previous = points[(n + i - 1) % n], &next = points[(i + 1) % n];
        const bool stays = isPointOnVertex(current, originRect) || !isPointOnEdge(current, originRect);
        const bool comes = isPointOnEdge(previous, originRect), goes = isPointOnEdge(next, originRect);
        if (stays || comes == goes) {
            result.push_back(current);
            continue;
        }
        const CGPoint expanded =
            expandPoint(current, originRect, expandLength, current - (goes ? previous : next));
        if (comes && expanded != current) result.push_back(expanded);
        result.push_back(current);
        if (goes && expanded != current) result.push_back(expanded);
    }
    return result;
}

QVOutlineSet expandPointsArray(const QVOutlineSet& pointsArray, const CGRect& originRect,
                               double expandLength) {
    return eachOf(pointsArray,
                  [&](const QVOutline& points) { return expandPoints(points, originRect, expandLength); });
}

QVOutline adjustCurvePoints(const QVOutline& points, double minLength) {
    QVOutline result;
    const std::size_t n = points.size();
    for (std::size_t i = 0; i < n; ++i) {
        const CGPoint &current = points[i], &previous = points[(n + i - 1) % n];
        const CGPoint edge = current - previous;
        const double length = std::sqrt(edge.x * edge.x + edge.y * edge.y);
        if (length > 2 * minLength) {
            const double share = minLength / length;
            result.push_back({previous.x + share * edge.x, previous.y + share * edge.y});
            result.push_back({current.x - share * edge.x, current.y - share * edge.y});
        }
        result.push_back(current);
    }
    return result;
}

QVOutlineSet adjustCurvePointsArray(const QVOutlineSet& pointsArray, double minLength) {
    return eachOf(pointsArray, [&](const QVOutline& points) { return adjustCurvePoints(points, minLength); });
}

UIBezierPath smoothPathWithPointArray(const QVOutlineSet& pointsArray) {
    UIBezierPath path;
    for (const QVOutline& points : adjustCurvePointsArray(pointsArray, kSmoothMinLength)) {
        if (points.empty()) continue;
        path.moveToPoint(points[0]);
        if (points.size() > 1) path.addLineToPoint(middle(points[0], points[1]));
        for (std::size_t j = 2; j < points.size(); ++j)
            path.addQuadCurveToPoint(middle(points[j - 1], points[j]), points[j - 1]);
        path.addLineToPoint(points.back());
        path.closePath();
    }
    return path;
}

UIBezierPath smoothPathWithPointArray(const QVOutlineSet& pointsArray, const CGRect& originRect,
                                      double expandLength) {
    return smoothPathWithPointArray(expandPointsArray(pointsArray, originRect, expandLength));
}

}  // namespace qv
