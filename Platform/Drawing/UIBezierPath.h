#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "Platform/Geometry/Geometry.h"

namespace qv {

/// A list of lines and cubic curves, in the coordinates of whoever draws it. A path that begins with a line
/// or a curve begins at that element's first point.
class UIBezierPath {
  public:
    /// What an element does: begin a subpath, draw a line or a cubic curve, or close the subpath.
    enum class Verb { move, line, curve, close };
    /// One step of a path.
    struct Element {
        Verb verb;                      ///< what it does
        std::array<CGPoint, 3> points;  ///< end point last, a curve's controls before it; see `used`

        /// The points that count: one of a move or a line, three of a curve, none of a close.
        std::span<const CGPoint> used() const {
            return std::span(points).first(verb == Verb::curve ? 3 : verb == Verb::close ? 0 : 1);
        }
    };

    /// A closed path around the rectangle, or the ellipse that fills it.
    static UIBezierPath bezierPathWithRect(const CGRect& rect);
    static UIBezierPath bezierPathWithOvalInRect(const CGRect& rect);
    /// The radius is cut to half the shorter side.
    static UIBezierPath bezierPathWithRoundedRect(const CGRect& rect, double cornerRadius);

    /// Begins a subpath.
    void moveToPoint(CGPoint point);
    /// Goes on from the current point, straight or in a cubic curve.
    void addLineToPoint(CGPoint point);
    void addCurveToPoint(CGPoint end, CGPoint control1, CGPoint control2);
    /// A quadratic curve, stored as the equal cubic.
    void addQuadCurveToPoint(CGPoint end, CGPoint control);
    /// Angles in radians, from +x towards +y, which is clockwise where y points down; a line joins the
    /// current point to the arc's start. The arc runs in the given direction and makes at most one turn.
    void addArcWithCenter(CGPoint center, double radius, double startAngle, double endAngle, bool clockwise);
    /// Adds the elements of another path, which keeps its own subpaths.
    void appendPath(const UIBezierPath& path);
    /// Joins the subpath's end to its start, which becomes the current point.
    void closePath();
    /// Maps all points.
    void applyTransform(const CGAffineTransform& transform);

    /// Whether it has no elements.
    bool isEmpty() const { return elements_.empty(); }
    /// Where the next line or curve begins.
    CGPoint currentPoint() const { return current_; }
    /// Box of all end and control points; `CGRectZero` when empty.
    CGRect controlPointBounds() const;
    /// In the order in which they were added.
    const std::vector<Element>& elements() const { return elements_; }

  private:
    std::vector<Element> elements_;
    CGPoint current_, start_;
};

}  // namespace qv
