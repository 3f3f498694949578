// Lines along curves, compared with distances that are searched for on finely divided curves.

#include "Platform/ImageGraph/LinePass.h"

#include "Platform/ImageGraph/ImageNode.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using test::Picture;

constexpr int kWidth = 180, kHeight = 120;
constexpr double kScale = 1.5;  // pixels a point

/// The closed line through the middles of a polygon's edges.
void addOutline(std::vector<LineSegment>& curves, const std::vector<CGPoint>& points) {
    const std::size_t n = points.size();
    for (std::size_t i = 0; i < n; ++i) {
        const CGPoint a = points[(i + n - 1) % n], b = points[i], c = points[(i + 1) % n];
        curves.push_back({{float(a.x + b.x) / 2, float(a.y + b.y) / 2},
                          {float(b.x + c.x) / 2, float(b.y + c.y) / 2},
                          {float(b.x), float(b.y)}});
    }
}

/// From a place to the nearest of many on the curves.
double distanceTo(const std::vector<CGPoint>& places, double x, double y) {
    double nearest = INFINITY;
    for (const CGPoint& place : places)
        nearest = std::min(nearest, (x - place.x) * (x - place.x) + (y - place.y) * (y - place.y));
    return std::sqrt(nearest);
}

/// Places on the curves, a quarter of a point apart.
std::vector<CGPoint> placesOn(const std::vector<LineSegment>& curves) {
    std::vector<CGPoint> places;
    for (const LineSegment& s : curves) {
        const double reach = std::hypot(s.control[0] - s.start[0], s.control[1] - s.start[1]) +
                             std::hypot(s.control[0] - s.end[0], s.control[1] - s.end[1]);
        const int count = int(4 * reach) + 1;
        for (int i = 0; i <= count; ++i) {
            const double t = double(i) / count, u = 1 - t;
            places.push_back({u * u * s.start[0] + 2 * u * t * s.control[0] + t * t * s.end[0],
                              u * u * s.start[1] + 2 * u * t * s.control[1] + t * t * s.end[1]});
        }
    }
    return places;
}

MTIImage imageOf(LinePass pass, MTIPixelFormat format) {
    auto node = std::make_shared<ImageNode>();
    node->operation = std::move(pass);
    node->width = kWidth;
    node->height = kHeight;
    node->pixelFormat = format;
    return MTIImage(std::move(node));
}

struct LineCase {
    const char* name;
    std::vector<std::vector<CGPoint>> outlines;
    float thickness;  // points
};

class LinePassDistances : public testing::TestWithParam<LineCase> {};

TEST_P(LinePassDistances, AreThoseToTheCurves) {
    std::vector<LineSegment> curves;
    for (const auto& outline : GetParam().outlines) addOutline(curves, outline);
    const double radius = GetParam().thickness / 2;
    const std::vector<CGPoint> places = placesOn(curves);
    std::vector<double> distances;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            distances.push_back(distanceTo(places, (x + 0.5) / kScale, (y + 0.5) / kScale));
    for (MTIPixelFormat format : {MTIPixelFormat::rgba8Unorm, MTIPixelFormat::rgba16Float}) {
        const Picture picture =
            test::render(imageOf(LinePass(curves, GetParam().thickness, {120, 80}), format));
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const double distance = distances[std::size_t(y * kWidth + x)];
                // Curves may be simplified by a fiftieth of half the width or a third of a pixel, and samples
                // differ.
                const double slack = 0.03 + 0.6 / (radius * kScale);
                const auto pixel = picture.at(x, y);
                ASSERT_NEAR(pixel[0], std::max(1 - distance / radius, 0.0), slack) << x << ", " << y;
                const double inside = (radius - distance) * kScale;
                if (std::abs(inside) > 1.5) {
                    ASSERT_NEAR(pixel[3], inside > 0 ? 1 : 0, 0.005) << x << ", " << y;
                }
            }
        }
    }
}

std::vector<CGPoint> wobblyCircle() {
    std::vector<CGPoint> points;
    for (int i = 0; i < 240; ++i) {
        const double angle = i * 2 * M_PI / 240, r = 26 + 0.5 * std::sin(31.0 * i);
        points.push_back({60 + r * std::cos(angle), 40 + r * std::sin(angle)});
    }
    return points;
}

INSTANTIATE_TEST_SUITE_P(
    All, LinePassDistances,
    testing::Values(
        LineCase{"Corners", {{{20, 15}, {100, 15}, {60, 24}, {95, 66}, {50, 30}, {22, 64}}}, 9},
        LineCase{"Stairs", {wobblyCircle()}, 24},  //
        LineCase{"ThereAndBack", {{{20, 20}, {100, 60}}}, 10},
        LineCase{
            "APointAndTwinPoints", {{{25, 40}}, {{60, 20}, {60, 20}, {100, 60}, {100, 60}, {70, 65}}}, 14},
        LineCase{"ThinAndOutOfTheFrame", {{{-300, -50}, {400, 20}, {90, 300}}, wobblyCircle()}, 3}),
    [](const auto& one) { return one.param.name; });

TEST(LinePass, DrawsNothingOfWhatCannotBeSeen) {
    std::vector<LineSegment> curves;
    addOutline(curves, {{20, 20}, {100, 60}, {20, 60}});
    std::vector<LinePass> lines{LinePass({}, 4, {120, 80}), LinePass(curves, 0, {120, 80}),
                                LinePass(curves, NAN, {120, 80}), LinePass(curves, 4, {0, 80}),
                                LinePass({{{NAN, 0}, {1, 1}, {0, 1}}}, 4, {120, 80})};
    for (LinePass& pass : lines) {
        const Picture picture = test::render(imageOf(std::move(pass), MTIPixelFormat::rgba8Unorm));
        EXPECT_EQ(*std::ranges::max_element(picture.values), 0);
    }
}

}  // namespace
}  // namespace qv
