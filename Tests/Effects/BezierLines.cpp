// The buffers and colours of lines along outlines.

#include "QVFilterExtension/MTIFilters/Bezier/QVBezierLineRender.h"

#include "QVFilterExtension/MTIFilters/Bezier/BezierLinesData.h"
#include "Tests/Support/TestEffect.h"

namespace qv {
namespace {

const QVOutlineSet kTriangle{{{10, 10}, {90, 10}, {10, 70}}};

TEST(BezierLines, RunThroughTheMiddlesOfTheEdgesInSinglePrecision) {
    static_assert(sizeof(LineSegment) == 24);
    const QVOutline outline{{0.1, 0}, {4, 0.3}, {16777217, 8}};
    const auto curves = BezierLinesDataWithPoints(outline);
    ASSERT_EQ(curves.size(), 3u);
    EXPECT_EQ(curves[0], (LineSegment{{float(8388608.55), 4}, {float(2.05), float(0.15)}, {float(0.1), 0}}));
    EXPECT_EQ(curves[1].start[0], curves[0].end[0]);
    EXPECT_EQ(curves[2].start[0], float(8388610.5));
    EXPECT_EQ(BezierLinesDataWithPoints({{7, 9}}), (std::vector<LineSegment>{{{7, 9}, {7, 9}, {7, 9}}}));
    EXPECT_TRUE(BezierLinesDataWithPoints({}).empty());
    const auto all = BezierLinesDataWithPointsArray({outline, {}, {{7, 9}}});
    ASSERT_EQ(all.size(), 4u);
    EXPECT_EQ(all[3].control[1], 9);
}

TEST(BezierLines, StopsAreRecordsOf32Bytes) {
    static_assert(sizeof(QVBezierLineColor::Record) == 32 && offsetof(QVBezierLineColor::Record, t) == 16);
    QVBezierLineRender render;
    EXPECT_EQ(render.elementsPerInstance(), 100);
    EXPECT_EQ(render.sampleCount(), 2u);
    const auto standard = render.colArrayData();
    ASSERT_EQ(standard.size(), 2u);
    EXPECT_EQ(standard[0], (QVBezierLineColor::Record{{1, 1, 1, 1}, 0}));
    EXPECT_EQ(standard[1], (QVBezierLineColor::Record{{0, 0, 0, 1}, 1}));
    const auto refuse = [](std::optional<UIColor> color, float t) {
        EXPECT_DEATH(QVBezierLineColorMake(color, t), "col != nil && t>=0.0 && t<=1.0");
    };
    refuse({}, 0.5f);
    refuse(UIColor::whiteColor(), 1.01f);
    refuse(UIColor::whiteColor(), NAN);
}

TEST(BezierLines, AreNilWithoutAnythingToDrawOrToColourWith) {
    QVBezierLineRender render;
    const CGSize size{100, 80};
    for (const QVOutlineSet& none : {QVOutlineSet{}, QVOutlineSet{{}}})
        EXPECT_FALSE(render.renderBezierWithPointsArray(none, size, 5, size));
    EXPECT_FALSE(render.renderBlackWhiteBezierWithPointsArray(kTriangle, size, 5, {0, 80}));
    EXPECT_FALSE(render.renderColorBezierWithBlackWhiteTexure({}));
    render.setColArray(std::vector<QVBezierLineColor>{});
    EXPECT_TRUE(render.renderBlackWhiteBezierWithPointsArray(kTriangle, size, 5, size));
    EXPECT_FALSE(render.renderBezierWithPointsArray(kTriangle, size, 5, size));
}

/// The coloured line's pixel at (50, 10), the middle of the triangle's upper edge, or beside it.
test::Pixel pixelAt(QVBezierLineRender& render, int y = 10) {
    const CGSize size{100, 80};
    return test::render(render.renderBezierWithPointsArray(kTriangle, size, 12, size)).at(50, y);
}

TEST(BezierLines, TakeTheirColoursFromTheSourceThatWasSetLast) {
    QVBezierLineRender render;
    render.setColArray(std::vector{QVBezierLineColorMake(UIColor(0, 0, 1, 0.5), 1),
                                   QVBezierLineColorMake(UIColor(1, 0, 0), 0),
                                   QVBezierLineColorMake(UIColor(0, 1, 0), 0.5f)});
    // Half a pixel off the middle of a line six pixels to a side.
    const double p = 1 - 0.5 / 6, middle = 1 - p * p * (2 - p);
    EXPECT_NEAR(pixelAt(render)[0], 1 - 2 * middle, 0.02);
    EXPECT_NEAR(pixelAt(render)[1], 2 * middle, 0.02);
    const double q = 1 - 4.5 / 6, outer = (1 - q * q * (2 - q) - 0.5) * 2, alpha = 1 - outer / 2;
    const double blue = outer * 0.65 / (outer * 0.65 + (1 - outer) * 1.15);
    EXPECT_NEAR(pixelAt(render, 14)[3], alpha, 0.02);
    EXPECT_NEAR(pixelAt(render, 14)[2], blue * alpha, 0.03);
    EXPECT_EQ(pixelAt(render, 60)[3], 0);

    // The same by its two ends, which takes another way through the shader.
    render.setColArray(std::vector{QVBezierLineColorMake(UIColor(1, 0, 0), 0),
                                   QVBezierLineColorMake(UIColor(0, 0, 1, 0.5), 1)});
    const test::Pixel ends = pixelAt(render, 14);
    render.setColArray(std::vector{QVBezierLineColorMake(UIColor(1, 0, 0), 0),
                                   QVBezierLineColorMake(UIColor(0, 0, 1, 0.5), 1),
                                   QVBezierLineColorMake(UIColor(0, 0, 1, 0.5), 1)});
    EXPECT_LT(test::difference(ends, pixelAt(render, 14)), 0.01);

    render.setColorImage(UIImage(test::makeBitmap(4, 4, [](int, int) { return test::Pixel{0, 1, 1, 1}; })));
    EXPECT_NEAR(pixelAt(render, 14)[1], q * q * (2 - q), 0.02);
    EXPECT_NEAR(pixelAt(render, 14)[0], 0, 0.01);
    // Without the picture lines stay without colour until a ramp comes.
    render.setColorImage({});
    EXPECT_EQ(pixelAt(render)[3], 0);
    render.setColArray(std::vector{QVBezierLineColorMake(UIColor(0, 1, 0), 0)});
    EXPECT_NEAR(pixelAt(render)[1], 1, 0.01);
}

}  // namespace
}  // namespace qv
