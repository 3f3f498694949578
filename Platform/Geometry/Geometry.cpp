#include "Platform/Geometry/Geometry.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qv {

bool CGRectIsEmpty(const CGRect& rect) {
    return !(rect.size.width > 0 && rect.size.height > 0);
}

CGRect CGRectUnion(const CGRect& a, const CGRect& b) {
    if (CGRectIsEmpty(a)) return CGRectIsEmpty(b) ? CGRectZero : b;
    if (CGRectIsEmpty(b)) return a;
    double left = std::min(a.minX(), b.minX()), top = std::min(a.minY(), b.minY());
    return {{left, top}, {std::max(a.maxX(), b.maxX()) - left, std::max(a.maxY(), b.maxY()) - top}};
}

CGRect CGRectIntersection(const CGRect& a, const CGRect& b) {
    double left = std::max(a.minX(), b.minX()), top = std::max(a.minY(), b.minY());
    CGRect common{{left, top}, {std::min(a.maxX(), b.maxX()) - left, std::min(a.maxY(), b.maxY()) - top}};
    return CGRectIsEmpty(common) ? CGRectZero : common;
}

CGRect CGRectInset(const CGRect& rect, double dx, double dy) {
    return {{rect.origin.x + dx, rect.origin.y + dy}, {rect.size.width - 2 * dx, rect.size.height - 2 * dy}};
}

CGAffineTransform CGAffineTransformMakeRotation(double angle) {
    double sine = std::sin(angle), cosine = std::cos(angle);
    return {cosine, sine, -sine, cosine, 0, 0};
}

CGAffineTransform CGAffineTransformConcat(const CGAffineTransform& first, const CGAffineTransform& second) {
    return {first.a * second.a + first.b * second.c,
            first.a * second.b + first.b * second.d,
            first.c * second.a + first.d * second.c,
            first.c * second.b + first.d * second.d,
            first.tx * second.a + first.ty * second.c + second.tx,
            first.tx * second.b + first.ty * second.d + second.ty};
}

CGAffineTransform CGAffineTransformTranslate(const CGAffineTransform& transform, double tx, double ty) {
    return CGAffineTransformConcat(CGAffineTransformMakeTranslation(tx, ty), transform);
}

CGAffineTransform CGAffineTransformScale(const CGAffineTransform& transform, double sx, double sy) {
    return CGAffineTransformConcat(CGAffineTransformMakeScale(sx, sy), transform);
}

CGAffineTransform CGAffineTransformRotate(const CGAffineTransform& transform, double angle) {
    return CGAffineTransformConcat(CGAffineTransformMakeRotation(angle), transform);
}

CGAffineTransform CGAffineTransformInvert(const CGAffineTransform& transform) {
    const auto& [a, b, c, d, tx, ty] = transform;
    double determinant = a * d - b * c;
    if (determinant == 0 || !std::isfinite(determinant)) return transform;
    return {d / determinant,
            -b / determinant,
            -c / determinant,
            a / determinant,
            (c * ty - d * tx) / determinant,
            (b * tx - a * ty) / determinant};
}

CGPoint CGPointApplyAffineTransform(const CGPoint& point, const CGAffineTransform& transform) {
    return {transform.a * point.x + transform.c * point.y + transform.tx,
            transform.b * point.x + transform.d * point.y + transform.ty};
}

CGSize CGSizeApplyAffineTransform(const CGSize& size, const CGAffineTransform& transform) {
    return {transform.a * size.width + transform.c * size.height,
            transform.b * size.width + transform.d * size.height};
}

CGRect CGRectApplyAffineTransform(const CGRect& rect, const CGAffineTransform& transform) {
    auto corner = [&](double x, double y) { return CGPointApplyAffineTransform({x, y}, transform); };
    CGPoint corners[] = {corner(rect.minX(), rect.minY()), corner(rect.maxX(), rect.minY()),
                         corner(rect.minX(), rect.maxY()), corner(rect.maxX(), rect.maxY())};
    auto [minX, maxX] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
    auto [minY, maxY] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
    return {{minX, minY}, {maxX - minX, maxY - minY}};
}

std::string NSStringFromCGSize(const CGSize& size) {
    return fmt::format("{{{}, {}}}", size.width, size.height);
}

}  // namespace qv
