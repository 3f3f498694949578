#include "Platform/Drawing/BitmapCanvas.h"
#include "QVFilterExtension/Resources/Assets/FilmLooks/FilmLooks.h"

namespace qv::assets {

namespace {

const UIColor kWhite(1, 1, 1), kRim(0, 0, 0, 0.20);

UIBezierPath lines(std::initializer_list<CGPoint> points) {
    UIBezierPath path;
    for (const CGPoint& point : points)
        point == *points.begin() ? path.moveToPoint(point) : path.addLineToPoint(point);
    return path;
}

/// White lines of one width over a rim that reaches `rim` further and fades.
void strokeMarked(BitmapCanvas& canvas, const UIBezierPath& path, double width, double rim = 9) {
    for (const double share : {1.0, 0.66, 0.33})
        canvas.strokePath(path, kRim, width + 2 * rim * share, LineCap::round, LineJoin::round);
    canvas.strokePath(path, kWhite, width, LineCap::round, LineJoin::round);
}

void fillMarked(BitmapCanvas& canvas, const UIBezierPath& path, const UIColor& color, double rim = 9) {
    for (const double share : {1.0, 0.66, 0.33})
        canvas.strokePath(path, kRim, 2 * rim * share, LineCap::round, LineJoin::round);
    canvas.fillPath(path, color);
}

}  // namespace

Bitmap displayCorner() {
    BitmapCanvas canvas({256, 256});
    strokeMarked(canvas, lines({{16, 240}, {16, 16}, {240, 16}}), 12, 8);
    return canvas.image().bitmap();
}

Bitmap autoBadge() {
    BitmapCanvas canvas({354, 132});
    strokeMarked(canvas, UIBezierPath::bezierPathWithRoundedRect({{14, 14}, {326, 104}}, 22), 9);
    constexpr double kTop = 42, kBottom = 90, kLetter = 44, kAdvance = 68;
    UIBezierPath word;
    const auto letter = [&](int index, std::initializer_list<std::initializer_list<CGPoint>> strokes) {
        for (const auto& stroke : strokes) {
            UIBezierPath path = lines(stroke);
            path.applyTransform(CGAffineTransformMakeTranslation(53 + kAdvance * index, 0));
            word.appendPath(path);
        }
    };
    letter(0,
           {{{0, kBottom}, {0, kTop + 14}, {14, kTop}, {30, kTop}, {kLetter, kTop + 14}, {kLetter, kBottom}},
            {{0, 70}, {kLetter, 70}}});
    letter(1, {{{0, kTop},
                {0, kBottom - 12},
                {12, kBottom},
                {32, kBottom},
                {kLetter, kBottom - 12},
                {kLetter, kTop}}});
    letter(2, {{{0, kTop}, {kLetter, kTop}}, {{kLetter / 2, kTop}, {kLetter / 2, kBottom}}});
    letter(3, {{{12, kTop},
                {32, kTop},
                {kLetter, kTop + 12},
                {kLetter, kBottom - 12},
                {32, kBottom},
                {12, kBottom},
                {0, kBottom - 12},
                {0, kTop + 12},
                {12, kTop}}});
    strokeMarked(canvas, word, 10, 5);
    return canvas.image().bitmap();
}

Bitmap batterySign() {
    BitmapCanvas canvas({276, 132});
    strokeMarked(canvas, UIBezierPath::bezierPathWithRoundedRect({{14, 16}, {220, 100}}, 16), 9);
    fillMarked(canvas, UIBezierPath::bezierPathWithRoundedRect({{243, 46}, {18, 40}}, 6), kWhite, 6);
    for (int bar = 0; bar < 2; ++bar)
        fillMarked(canvas, UIBezierPath::bezierPathWithRoundedRect({{36.0 + 62 * bar, 38}, {48, 56}}, 5),
                   kWhite, 4);
    return canvas.image().bitmap();
}

Bitmap recordingDot() {
    BitmapCanvas canvas({128, 128});
    canvas.drawRadialGradient({64, 64}, 0, {64, 64}, 64,
                              {{0, UIColor(1, 0.1, 0.08, 0.55)},
                               {0.5, UIColor(1, 0.1, 0.08, 0.4)},
                               {0.75, UIColor(1, 0.1, 0.08, 0.08)},
                               {1, UIColor(1, 0.1, 0.08, 0)}});
    canvas.fillPath(UIBezierPath::bezierPathWithOvalInRect({{28, 28}, {72, 72}}), UIColor(0.96, 0.09, 0.07));
    return canvas.image().bitmap();
}

Bitmap letterBox() {
    BitmapCanvas canvas({504, 228});
    UIBezierPath box = lines({{18, 18}, {486, 18}, {486, 210}, {18, 210}});
    box.closePath();
    strokeMarked(canvas, box, 12, 10);
    return canvas.image().bitmap();
}

Bitmap playTriangle() {
    BitmapCanvas canvas({132, 180});
    UIBezierPath triangle = lines({{16, 18}, {120, 90}, {16, 162}});
    triangle.closePath();
    fillMarked(canvas, triangle, kWhite, 12);
    return canvas.image().bitmap();
}

}  // namespace qv::assets
