#include "Platform/Drawing/UIBezierPath.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qv {

UIBezierPath UIBezierPath::bezierPathWithRect(const CGRect& rect) {
    UIBezierPath path;
    path.moveToPoint({rect.minX(), rect.minY()});
    path.addLineToPoint({rect.maxX(), rect.minY()});
    path.addLineToPoint({rect.maxX(), rect.maxY()});
    path.addLineToPoint({rect.minX(), rect.maxY()});
    path.closePath();
    return path;
}

UIBezierPath UIBezierPath::bezierPathWithOvalInRect(const CGRect& rect) {
    UIBezierPath path;
    path.addArcWithCenter({0, 0}, 1, 0, 2 * std::numbers::pi, true);
    path.closePath();
    path.applyTransform({rect.size.width / 2, 0, 0, rect.size.height / 2, rect.midX(), rect.midY()});
    return path;
}

UIBezierPath UIBezierPath::bezierPathWithRoundedRect(const CGRect& rect, double cornerRadius) {
    double radius = std::min(cornerRadius, std::min(rect.size.width, rect.size.height) / 2);
    if (!(radius > 0)) return bezierPathWithRect(rect);
    constexpr double quarter = std::numbers::pi / 2;
    double left = rect.minX() + radius, right = rect.maxX() - radius;
    double top = rect.minY() + radius, bottom = rect.maxY() - radius;
    UIBezierPath path;
    path.addArcWithCenter({right, top}, radius, -quarter, 0, true);
    path.addArcWithCenter({right, bottom}, radius, 0, quarter, true);
    path.addArcWithCenter({left, bottom}, radius, quarter, 2 * quarter, true);
    path.addArcWithCenter({left, top}, radius, 2 * quarter, 3 * quarter, true);
    path.closePath();
    return path;
}

void UIBezierPath::moveToPoint(CGPoint point) {
    elements_.push_back({Verb::move, {point}});
    current_ = start_ = point;
}

void UIBezierPath::addLineToPoint(CGPoint point) {
    if (isEmpty()) return moveToPoint(point);
    elements_.push_back({Verb::line, {point}});
    current_ = point;
}

void UIBezierPath::addCurveToPoint(CGPoint end, CGPoint control1, CGPoint control2) {
    if (isEmpty()) moveToPoint(control1);
    elements_.push_back({Verb::curve, {control1, control2, end}});
    current_ = end;
}

void UIBezierPath::addQuadCurveToPoint(CGPoint end, CGPoint control) {
    if (isEmpty()) moveToPoint(control);
    auto towardsControl = [&](CGPoint from) {
        return CGPoint{from.x + (control.x - from.x) * 2 / 3, from.y + (control.y - from.y) * 2 / 3};
    };
    addCurveToPoint(end, towardsControl(current_), towardsControl(end));
}

void UIBezierPath::addArcWithCenter(CGPoint center, double radius, double startAngle, double endAngle,
                                    bool clockwise) {
    constexpr double turn = 2 * std::numbers::pi;
    double sweep = clockwise ? endAngle - startAngle : startAngle - endAngle;
    if (!std::isfinite(sweep)) return;
    sweep = std::abs(sweep) >= turn ? turn : sweep - turn * std::floor(sweep / turn);
    auto on = [&](double angle) {
        return CGPoint{center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
    };
    addLineToPoint(on(startAngle));
    // Pieces of at most a quarter turn; a cubic with this handle length stays within 0.03 % of the circle.
    int pieces = std::max(1, int(std::ceil(sweep / (turn / 4) - 1e-9)));
    double step = (clockwise ? sweep : -sweep) / pieces;
    double handle = 4.0 / 3.0 * std::tan(step / 4) * radius;
    for (int i = 0; i < pieces; ++i) {
        double from = startAngle + step * i, to = from + step;
        CGPoint begin = on(from), end = on(to);
        addCurveToPoint(end, {begin.x - handle * std::sin(from), begin.y + handle * std::cos(from)},
                        {end.x + handle * std::sin(to), end.y - handle * std::cos(to)});
    }
}

void UIBezierPath::appendPath(const UIBezierPath& path) {
    if (path.isEmpty()) return;
    auto added = path.elements_;  // a copy, so that a path can be appended to itself
    elements_.insert(elements_.end(), added.begin(), added.end());
    current_ = path.current_;
    start_ = path.start_;
}

void UIBezierPath::closePath() {
    if (isEmpty()) return;
    elements_.push_back({Verb::close, {}});
    current_ = start_;
}

void UIBezierPath::applyTransform(const CGAffineTransform& transform) {
    for (auto& element : elements_)
        for (auto& point : element.points) point = CGPointApplyAffineTransform(point, transform);
    current_ = CGPointApplyAffineTransform(current_, transform);
    start_ = CGPointApplyAffineTransform(start_, transform);
}

CGRect UIBezierPath::controlPointBounds() const {
    if (isEmpty()) return CGRectZero;
    CGPoint low = elements_.front().points[0], high = low;
    for (const auto& element : elements_) {
        for (const auto& point : element.used()) {
            low = {std::min(low.x, point.x), std::min(low.y, point.y)};
            high = {std::max(high.x, point.x), std::max(high.y, point.y)};
        }
    }
    return CGRectMake(low.x, low.y, high.x - low.x, high.y - low.y);
}

}  // namespace qv
