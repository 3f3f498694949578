#pragma once

#include <array>
#include <vector>

#include "Platform/Geometry/Geometry.h"

namespace qv {

/// A list of lines and cubic curves, in the coordinates of whoever draws it.
class UIBezierPath {
  public:
    enum class Verb { move, line, curve, close };
    struct Element {
        Verb verb;
        std::array<CGPoint, 3> points;  ///< end point last; a curve's controls before it
    };

    static UIBezierPath bezierPathWithRect(const CGRect& rect);
    static UIBezierPath bezierPathWithOvalInRect(const CGRect& rect);
    static UIBezierPath bezierPathWithRoundedRect(const CGRect& rect, double cornerRadius);

    void moveToPoint(CGPoint point);
    void addLineToPoint(CGPoint point);
    void addCurveToPoint(CGPoint end, CGPoint control1, CGPoint control2);
    /// A quadratic curve, stored as the equal cubic.
    void addQuadCurveToPoint(CGPoint end, CGPoint control);
    /// Angles in radians, from +x towards +y; a line joins the current point to the arc's start.
    void addArcWithCenter(CGPoint center, double radius, double startAngle, double endAngle, bool clockwise);
    void appendPath(const UIBezierPath& path);
    void closePath();
    void applyTransform(const CGAffineTransform& transform);

    bool isEmpty() const { return elements_.empty(); }
    CGPoint currentPoint() const { return current_; }
    /// Box of all end and control points; `CGRectZero` when empty.
    CGRect controlPointBounds() const;
    const std::vector<Element>& elements() const { return elements_; }

  private:
    std::vector<Element> elements_;
    CGPoint current_, start_;
};

}  // namespace qv
