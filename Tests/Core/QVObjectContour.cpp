// Outlines of masks whose edges are known by a formula.

#include "QVALObjectContour/QVObjectContour.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>

namespace qv {
namespace {

/// A mask of 0..1 by the coverage of each pixel, from 4 × 4 places in it.
PixelBuffer maskOf(int width, int height, const std::function<double(double x, double y)>& value) {
    PixelBuffer mask = PixelBuffer::create(PixelFormat::gray8, width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            double sum = 0;
            for (int i = 0; i < 16; ++i) sum += value(x + (i % 4 + 0.5) / 4, y + (i / 4 + 0.5) / 4);
            mask.plane(0).data[std::size_t(y) * mask.plane(0).rowBytes + std::size_t(x)] =
                std::uint8_t(std::lround(255 * sum / 16));
        }
    }
    return mask;
}

/// White within the radius, falling to black over `softness` pixels around it.
auto disc(double centerX, double centerY, double radius, double softness = 0.01) {
    return [=](double x, double y) {
        return std::clamp((radius - std::hypot(x - centerX, y - centerY)) / softness + 0.5, 0.0, 1.0);
    };
}

double signedArea(const QVOutline& outline) {
    double twice = 0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const CGPoint a = outline[i], b = outline[(i + 1) % outline.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return twice / 2;
}

/// Distances of an outline's points from a centre, least and greatest.
std::pair<double, double> distances(const QVOutline& outline, double centerX, double centerY) {
    std::pair<double, double> range{1e9, 0};
    for (const CGPoint& point : outline) {
        const double distance = std::hypot(point.x - centerX, point.y - centerY);
        range = {std::min(range.first, distance), std::max(range.second, distance)};
    }
    return range;
}

QVOutlineSet outlinesOf(const PixelBuffer& mask, int radius) {
    const int side = std::max(mask.width(), mask.height());
    return QVObjectContour::getApproxContourPointsWithMask(mask, radius, float(1.0 / side));
}

/// Where the outline crosses a horizontal line, in order.
std::vector<double> crossings(const QVOutline& outline, double y) {
    std::vector<double> found;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const CGPoint a = outline[i], b = outline[(i + 1) % outline.size()];
        if ((a.y < y) != (b.y < y)) found.push_back(a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y));
    }
    std::sort(found.begin(), found.end());
    return found;
}

TEST(QVObjectContour, LiesOnSoftAndHardEdges) {
    for (double softness : {0.01, 3.0, 12.0}) {
        const QVOutlineSet outlines = outlinesOf(maskOf(512, 288, disc(250.3, 140.7, 90, softness)), 0);
        ASSERT_EQ(outlines.size(), 1u);
        const auto [nearest, farthest] = distances(outlines[0], 250.3, 140.7);
        EXPECT_NEAR(nearest, 90, 0.35) << softness;
        EXPECT_NEAR(farthest, 90, 0.35) << softness;
        EXPECT_LT(outlines[0].size(), 120u);
    }
    // A large mask is reduced; the line stays on its edge.
    const auto [nearest, farthest] =
        distances(outlinesOf(maskOf(2600, 1500, disc(1300, 750, 500)), 0).at(0), 1300, 750);
    EXPECT_NEAR(nearest, 500, 1.0);
    EXPECT_NEAR(farthest, 500, 1.0);
}

TEST(QVObjectContour, MovesWithTheSubjectByPartsOfAPixel) {
    for (int step = 0; step <= 20; ++step) {
        const double shift = step * 0.1;
        const QVOutlineSet outlines = outlinesOf(maskOf(512, 288, disc(200 + shift, 144, 80, 2)), 4);
        ASSERT_EQ(outlines.size(), 1u);
        const std::vector<double> places = crossings(outlines[0], 144.0);
        ASSERT_EQ(places.size(), 2u);
        // Its own distance from the edge cancels out in the middle.
        EXPECT_NEAR((places[0] + places[1]) / 2, 200 + shift, 0.3) << shift;
    }
}

TEST(QVObjectContour, KeepsADistanceThatGrowsWithTheRadius) {
    const PixelBuffer mask = maskOf(512, 512, disc(256, 256, 150));
    for (int radius : {1, 4, 8, 17}) {
        const auto [nearest, farthest] = distances(outlinesOf(mask, radius).at(0), 256, 256);
        EXPECT_NEAR(nearest, 150 + 0.64 * radius, 0.5 + 0.06 * radius) << radius;
        EXPECT_NEAR(farthest, 150 + 0.64 * radius, 0.5 + 0.06 * radius) << radius;
    }
}

TEST(QVObjectContour, ClosesGapsByTheRadius) {
    const auto bars = [](double gap) {
        return maskOf(512, 288, [gap](double x, double y) {
            return y > 80 && y < 200 && std::abs(x - 256) > gap / 2 && std::abs(x - 256) < 60 ? 1.0 : 0.0;
        });
    };
    EXPECT_EQ(outlinesOf(bars(9), 0).size(), 2u);
    EXPECT_EQ(outlinesOf(bars(9), 8).size(), 1u);
    EXPECT_EQ(outlinesOf(bars(24), 8).size(), 2u);
}

TEST(QVObjectContour, SeveralPeopleAndHolesInReadingOrder) {
    const auto ring = disc(150, 140, 70), hole = disc(150, 140, 30), other = disc(380, 160, 60);
    const auto speck = disc(300, 20, 1.2);
    const QVOutlineSet outlines = outlinesOf(maskOf(512, 288,
                                                    [&](double x, double y) {
                                                        return ring(x, y) - hole(x, y) + other(x, y) +
                                                               speck(x, y) + 0.2 * disc(60, 240, 30)(x, y);
                                                    }),
                                             0);
    ASSERT_EQ(outlines.size(), 3u);
    EXPECT_NEAR(signedArea(outlines[0]), M_PI * 70 * 70, 150);
    EXPECT_NEAR(signedArea(outlines[1]), M_PI * 60 * 60, 150);
    EXPECT_NEAR(signedArea(outlines[2]), -M_PI * 30 * 30, 150);
}

TEST(QVObjectContour, RunsOnTheBorder) {
    // Cut off below and at the right, as people are.
    const QVOutlineSet outlines =
        outlinesOf(maskOf(512, 288, [](double x, double y) { return x > 300 && y > 100 ? 1.0 : 0.0; }), 0);
    ASSERT_EQ(outlines.size(), 1u);
    double right = 0, below = 0;
    for (const CGPoint& point : outlines[0]) {
        right = std::max(right, point.x);
        below = std::max(below, point.y);
    }
    EXPECT_EQ(right, 512);
    EXPECT_EQ(below, 288);
    EXPECT_NEAR(signedArea(outlines[0]), 212 * 188, 60);
}

TEST(QVObjectContour, SurvivesWhatIsNoSubject) {
    EXPECT_TRUE(QVObjectContour::getApproxContourPointsWithMask({}, 4, 0.01f).empty());
    EXPECT_TRUE(outlinesOf(PixelBuffer::create(PixelFormat::rgba8, 64, 64), 4).empty());
    EXPECT_TRUE(outlinesOf(maskOf(64, 64, [](double, double) { return 0.0; }), 4).empty());
    const auto white = [](double, double) { return 1.0; };
    EXPECT_NEAR(signedArea(outlinesOf(maskOf(96, 64, white), 4).at(0)), 96 * 64, 2);
    for (int radius : {-5, 0, 3, 1 << 30}) {
        EXPECT_LE(outlinesOf(maskOf(1, 1, white), radius).size(), 1u);
        EXPECT_EQ(outlinesOf(maskOf(8192, 2, white), radius).size(), 1u);
    }
    const PixelBuffer round = maskOf(64, 64, disc(32, 32, 20));
    for (float epsilon : {-1.f, 0.f, 1e30f, std::nanf("")})
        EXPECT_LE(QVObjectContour::getApproxContourPointsWithMask(round, 2, epsilon).size(), 1u);
    // Hundreds of islands.
    EXPECT_EQ(outlinesOf(maskOf(512, 512,
                                [](double x, double y) {
                                    return std::hypot(std::fmod(x, 16) - 8, std::fmod(y, 16) - 8) < 5 ? 1.0
                                                                                                      : 0.0;
                                }),
                         0)
                  .size(),
              1024u);
}

}  // namespace
}  // namespace qv
