#pragma once

#include <string>

namespace qv {

/// A point; units and the direction of y belong to the space it is used in.
struct CGPoint {
    /// Coordinates, in the unit of their space.
    double x = 0, y = 0;
    bool operator==(const CGPoint&) const = default;
};

/// A width and a height; negative ones are not refused.
struct CGSize {
    /// Sides, in the unit of their space.
    double width = 0, height = 0;
    bool operator==(const CGSize&) const = default;
};

/// A rectangle from its corner of least coordinates, as a rule; a negative side is an empty rectangle.
struct CGRect {
    CGPoint origin;  ///< the corner of least x and y
    CGSize size;     ///< from there towards greater x and y
    bool operator==(const CGRect&) const = default;

    /// Edges and middle.
    double minX() const { return origin.x; }
    double minY() const { return origin.y; }
    double maxX() const { return origin.x + size.width; }
    double maxY() const { return origin.y + size.height; }
    double midX() const { return origin.x + size.width * 0.5; }
    double midY() const { return origin.y + size.height * 0.5; }
};

/// The origin, and the empty rectangle there.
inline constexpr CGPoint CGPointZero{};
inline constexpr CGRect CGRectZero{};

/// A rectangle from its corner and its sides.
constexpr CGRect CGRectMake(double x, double y, double width, double height) {
    return {{x, y}, {width, height}};
}

/// True for a rectangle without area (a zero or negative side).
bool CGRectIsEmpty(const CGRect& rect);

/// Smallest rectangle that holds both; an empty rectangle contributes nothing.
CGRect CGRectUnion(const CGRect& a, const CGRect& b);

/// Common part of both, `CGRectZero` where they do not meet.
CGRect CGRectIntersection(const CGRect& a, const CGRect& b);

/// Grows (negative insets) or shrinks a rectangle by dx and dy on each side.
CGRect CGRectInset(const CGRect& rect, double dx, double dy);

/// A 2-D affine map of row vectors: x' = a·x + c·y + tx, y' = b·x + d·y + ty.
struct CGAffineTransform {
    /// The coefficients; those of the identity at first.
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
    bool operator==(const CGAffineTransform&) const = default;
};

/// The map that moves nothing.
inline constexpr CGAffineTransform CGAffineTransformIdentity{};

/// A shift.
constexpr CGAffineTransform CGAffineTransformMakeTranslation(double tx, double ty) {
    return {1, 0, 0, 1, tx, ty};
}
/// A scaling about the origin.
constexpr CGAffineTransform CGAffineTransformMakeScale(double sx, double sy) {
    return {sx, 0, 0, sy, 0, 0};
}

/// Rotation by `angle` radians, from +x towards +y.
CGAffineTransform CGAffineTransformMakeRotation(double angle);

/// Applies `first`, then `second`.
CGAffineTransform CGAffineTransformConcat(const CGAffineTransform& first, const CGAffineTransform& second);

/// The named step happens before `transform`, as in a drawing context.
CGAffineTransform CGAffineTransformTranslate(const CGAffineTransform& transform, double tx, double ty);
CGAffineTransform CGAffineTransformScale(const CGAffineTransform& transform, double sx, double sy);
CGAffineTransform CGAffineTransformRotate(const CGAffineTransform& transform, double angle);

/// The inverse; a transform without one is returned unchanged.
CGAffineTransform CGAffineTransformInvert(const CGAffineTransform& transform);

/// The mapped point.
CGPoint CGPointApplyAffineTransform(const CGPoint& point, const CGAffineTransform& transform);
/// The mapped vector: the shift does not count.
CGSize CGSizeApplyAffineTransform(const CGSize& size, const CGAffineTransform& transform);

/// Bounding box of the transformed rectangle.
CGRect CGRectApplyAffineTransform(const CGRect& rect, const CGAffineTransform& transform);

/// "{w, h}" with the shortest decimals that read back as the same numbers; used as a cache key.
std::string NSStringFromCGSize(const CGSize& size);

/// Insets of a resizable image, in points.
struct UIEdgeInsets {
    /// From each edge inwards.
    double top = 0, left = 0, bottom = 0, right = 0;
    bool operator==(const UIEdgeInsets&) const = default;
};

}  // namespace qv
