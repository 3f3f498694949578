#include "Platform/Drawing/UIBezierPath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace qv {
namespace {

constexpr double kPi = std::numbers::pi;
using Verb = UIBezierPath::Verb;

CGPoint pointOnCurve(CGPoint from, const UIBezierPath::Element& curve, double t) {
    double u = 1 - t, a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
    const auto& p = curve.points;
    return {a * from.x + b * p[0].x + c * p[1].x + d * p[2].x,
            a * from.y + b * p[0].y + c * p[1].y + d * p[2].y};
}

/// Follows the path's curves: calls `visit` at steps along each.
template <typename Visit>
void follow(const UIBezierPath& path, Visit visit) {
    CGPoint at{};
    for (const auto& element : path.elements()) {
        if (element.verb == Verb::curve)
            for (int i = 0; i <= 64; ++i) visit(pointOnCurve(at, element, i / 64.0));
        if (!element.used().empty()) at = element.used().back();
    }
}

TEST(UIBezierPath, ArcsRunTheirWayRoundTheCircle) {
    struct Arc {
        double start, end;
        bool clockwise;
        double sweep;  ///< expected, clockwise positive
    };
    for (const auto& arc : {Arc{0, kPi / 2, true, kPi / 2}, Arc{0, kPi / 2, false, -1.5 * kPi},
                            Arc{0, -kPi / 2, true, 1.5 * kPi}, Arc{1, 1 + 2 * kPi, true, 2 * kPi},
                            Arc{0, 2 * kPi, false, -2 * kPi}, Arc{0, 9 * kPi, true, 2 * kPi},
                            Arc{2, 2.5, true, 0.5}, Arc{1, 1, true, 0}}) {
        UIBezierPath path;
        path.addArcWithCenter({3, -2}, 10, arc.start, arc.end, arc.clockwise);
        double turned = 0, before = arc.start;
        follow(path, [&](CGPoint point) {
            EXPECT_NEAR(std::hypot(point.x - 3, point.y + 2), 10, 0.003);
            double angle = std::atan2(point.y + 2, point.x - 3);
            turned += std::remainder(angle - before, 2 * kPi);
            before = angle;
        });
        EXPECT_NEAR(turned, arc.sweep, 1e-9) << arc.start << " to " << arc.end;
    }
    UIBezierPath joined;
    joined.moveToPoint({0, 0});
    joined.addArcWithCenter({5, 0}, 1, 0, kPi, true);
    EXPECT_EQ(joined.elements()[1].verb, Verb::line);
    EXPECT_NEAR(joined.elements()[1].points[0].x, 6, 1e-12);
    UIBezierPath nothing;
    nothing.addArcWithCenter({0, 0}, 1, 0, NAN, true);
    EXPECT_TRUE(nothing.isEmpty());
}

TEST(UIBezierPath, ShapesFillTheirRectangle) {
    auto rect = CGRectMake(10, 20, 40, 30);
    for (const auto& path :
         {UIBezierPath::bezierPathWithRect(rect), UIBezierPath::bezierPathWithOvalInRect(rect),
          UIBezierPath::bezierPathWithRoundedRect(rect, 5), UIBezierPath::bezierPathWithRoundedRect(rect, 99),
          UIBezierPath::bezierPathWithRoundedRect(rect, 0)}) {
        auto bounds = path.controlPointBounds();
        EXPECT_NEAR(bounds.minX(), 10, 1e-9);
        EXPECT_NEAR(bounds.minY(), 20, 1e-9);
        EXPECT_NEAR(bounds.maxX(), 50, 1e-9);
        EXPECT_NEAR(bounds.maxY(), 50, 1e-9);
        EXPECT_EQ(path.elements().back().verb, Verb::close);
    }
    follow(UIBezierPath::bezierPathWithOvalInRect(rect), [](CGPoint point) {
        EXPECT_NEAR(std::hypot((point.x - 30) / 20, (point.y - 35) / 15), 1, 0.0003);
    });
    // A corner of radius 5 stays 5 from its centre.
    follow(UIBezierPath::bezierPathWithRoundedRect(rect, 5), [](CGPoint point) {
        if (point.x < 15 && point.y < 25) {
            EXPECT_NEAR(std::hypot(point.x - 15, point.y - 25), 5, 0.002);
        }
    });
}

TEST(UIBezierPath, QuadraticsBecomeTheSameCurve) {
    UIBezierPath path;
    path.moveToPoint({0, 0});
    path.addQuadCurveToPoint({8, 2}, {3, 9});
    for (double t : {0.2, 0.5, 0.9}) {
        auto point = pointOnCurve({0, 0}, path.elements()[1], t);
        EXPECT_NEAR(point.x, 2 * t * (1 - t) * 3 + t * t * 8, 1e-12);
        EXPECT_NEAR(point.y, 2 * t * (1 - t) * 9 + t * t * 2, 1e-12);
    }
}

}  // namespace
}  // namespace qv
