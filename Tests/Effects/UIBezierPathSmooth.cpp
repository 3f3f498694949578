// Operations on outlines, against values worked out by hand.

#include "QVFilterExtension/Private/UIBezierPath+QVFESmooth.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace qv {

void PrintTo(const CGPoint& point, std::ostream* stream) {
    *stream << "(" << point.x << ", " << point.y << ")";
}

namespace {

using testing::ElementsAre;

constexpr CGRect kRect{{0, 0}, {100, 60}};

TEST(UIBezierPathSmooth, BorderBandAndCorners) {
    EXPECT_TRUE(isPointOnEdge({1.1, 30}, kRect));
    EXPECT_FALSE(isPointOnEdge({1.11, 30}, kRect));
    EXPECT_TRUE(isPointOnEdge({97.9, 30}, kRect));
    EXPECT_FALSE(isPointOnEdge({97.89, 30}, kRect));
    EXPECT_TRUE(isPointOnEdge({50, 1.0}, kRect));
    EXPECT_TRUE(isPointOnEdge({50, 57.95}, kRect));
    EXPECT_FALSE(isPointOnEdge({50, 57.85}, kRect));

    EXPECT_TRUE(isPointOnVertex({1, 0}, kRect));
    EXPECT_TRUE(isPointOnVertex({99.5, 0.5}, kRect));
    // The lower corners lie as far down as the rectangle is wide.
    EXPECT_TRUE(isPointOnVertex({0, 99}, kRect));
    EXPECT_TRUE(isPointOnVertex({98, 100}, kRect));
    EXPECT_FALSE(isPointOnVertex({0, 59}, kRect));
    EXPECT_FALSE(isPointOnVertex({1.2, 0}, kRect));
}

TEST(UIBezierPathSmooth, RunsAlongTheBorderAreLedOut) {
    // In at the left at a slope of 3 to 4, down the border, and out again straight.
    const QVOutline outline{{40, 2 + 15.0}, {0, 17 + 30.0}, {0, 52}, {40, 52}};
    const QVOutline led = expandPoints(outline, kRect, 10);
    ASSERT_EQ(led.size(), 6u);
    EXPECT_EQ(led[1], (CGPoint{0, 47}));
    EXPECT_NEAR(led[2].x, -8, 1e-6);
    EXPECT_NEAR(led[2].y, 53, 1e-6);
    EXPECT_EQ(led[3], (CGPoint{-10, 52}));
    EXPECT_EQ(led[4], (CGPoint{0, 52}));

    // Directions are single precision: a third is not a third of a double.
    const CGPoint moved = expandPoint({0, 0}, kRect, 1, {1, std::sqrt(2.0)});
    const float y = float(std::sqrt(2.0)), inverse = 1.0f / std::sqrt(1.0f + y * y);
    EXPECT_EQ(moved, (CGPoint{double(inverse), double(y * inverse)}));
    EXPECT_EQ(expandPoint({3, 4}, kRect, 5, {0, 0}), (CGPoint{3, 4}));

    for (const QVOutline& same : {QVOutline{{0, 0}, {99, 0}, {99, 59}, {0, 59}},  // all on the border
                                  QVOutline{{30, 30}, {0, 30}, {30, 40}},         // a run of one point
                                  QVOutline{{0, 10}}, QVOutline{}}) {
        EXPECT_EQ(expandPoints(same, kRect, 12), same);
    }
    // A run that begins in a corner is led out at its other end alone.
    EXPECT_THAT(expandPoints({{30, 30}, {0, 0}, {0, 30}}, kRect, 12),
                ElementsAre(CGPoint{30, 30}, CGPoint{0, 0}, CGPoint{-12, 30}, CGPoint{0, 30}));
    EXPECT_EQ(expandPoints(outline, kRect, 0), outline);
    EXPECT_EQ(expandPoints(outline, CGRectMake(0, 0, 0, 60), 10), outline);
}

TEST(UIBezierPathSmooth, LongEdgesGainTwoPoints) {
    EXPECT_THAT(adjustCurvePoints({{0, 0}, {12, 0}}, 6), ElementsAre(CGPoint{0, 0}, CGPoint{12, 0}));
    const QVOutline split = adjustCurvePoints({{0, 0}, {0, 20}}, 6);
    EXPECT_THAT(split, ElementsAre(CGPoint{0, 14}, CGPoint{0, 6}, CGPoint{0, 0}, CGPoint{0, 6},
                                   CGPoint{0, 14}, CGPoint{0, 20}));
    EXPECT_EQ(adjustCurvePoints({{0, 0}, {12.0001, 0}}, 6).size(), 6u);
    EXPECT_EQ(adjustCurvePointsArray({{{0, 0}, {12, 0}}, {}}, 6).size(), 2u);
}

TEST(UIBezierPathSmooth, CurvesBetweenTheMiddlesOfEdges) {
    using Verb = UIBezierPath::Verb;
    const auto verbs = [](const UIBezierPath& path) {
        std::vector<Verb> result;
        for (const auto& element : path.elements()) result.push_back(element.verb);
        return result;
    };
    const UIBezierPath two = smoothPathWithPointArray({{{1, 1}, {5, 1}}});
    EXPECT_THAT(verbs(two), ElementsAre(Verb::move, Verb::line, Verb::line, Verb::close));
    EXPECT_EQ(two.elements()[1].points[0], (CGPoint{3, 1}));
    EXPECT_EQ(two.elements()[2].points[0], (CGPoint{5, 1}));

    const UIBezierPath path = smoothPathWithPointArray({{{0, 0}, {9, 0}, {9, 9}, {0, 9}}, {}, {{4, 4}}});
    EXPECT_THAT(verbs(path), ElementsAre(Verb::move, Verb::line, Verb::curve, Verb::curve, Verb::line,
                                         Verb::close, Verb::move, Verb::line, Verb::close));
    // A quadratic as a cubic: its controls lie two thirds of the way to the corner.
    const auto& curve = path.elements()[2].points;
    EXPECT_EQ(curve[2], (CGPoint{9, 4.5}));
    EXPECT_NEAR(curve[0].x, 7.5, 1e-12);
    EXPECT_NEAR(curve[1].y, 1.5, 1e-12);
    EXPECT_EQ(path.elements()[3].points[2], (CGPoint{4.5, 9}));

    EXPECT_TRUE(smoothPathWithPointArray({}).isEmpty());
    const QVOutlineSet cut{{{40, 17}, {0, 47}, {0, 52}, {40, 52}}};
    EXPECT_LT(smoothPathWithPointArray(cut, kRect, 10).controlPointBounds().minX(), -9);
}

}  // namespace
}  // namespace qv
