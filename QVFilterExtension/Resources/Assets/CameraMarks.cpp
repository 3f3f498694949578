// Draws the marks of cameras' finders: brackets, focusing points, and what sets the exposure.

#include <numbers>
#include <string>

#include <fmt/format.h>

#include "Platform/Drawing/BitmapCanvas.h"
#include "Platform/Media/ImageFile.h"

using namespace qv;

namespace {

const UIColor kWhite{0.99, 0.99, 0.97}, kYellow{1.0, 0.80, 0.18}, kRed{1.0, 0.13, 0.08},
    kBlack{0.06, 0.06, 0.06};

/// A line with a soft rim of another colour, which keeps it visible on any picture: up to twice its width
/// wider, and up to `rimStrength` opaque.
void mark(BitmapCanvas& canvas, const UIBezierPath& path, const UIColor& color, double width,
          const UIColor& rim, double rimStrength) {
    constexpr int kSteps = 12;
    const UIColor veil{rim.red(), rim.green(), rim.blue(), rimStrength / kSteps};
    for (int i = kSteps; i > 0; --i)
        canvas.strokePath(path, veil, width * (1 + 2.0 * i / kSteps), LineCap::round, LineJoin::round);
    canvas.strokePath(path, color, width, LineCap::round, LineJoin::round);
}

UIBezierPath line(CGPoint from, CGPoint to) {
    UIBezierPath path;
    path.moveToPoint(from);
    path.addLineToPoint(to);
    return path;
}

/// The upper left one of four brackets.
UIImage bracket() {
    BitmapCanvas canvas({320, 320});
    UIBezierPath path;
    path.moveToPoint({44, 150});
    path.addLineToPoint({44, 66});
    path.addQuadCurveToPoint({66, 44}, {44, 44});
    path.addLineToPoint({150, 44});
    mark(canvas, path, kWhite, 13, kBlack, 0.45);
    return canvas.image();
}

/// A square of four corners about a point.
void cornered(BitmapCanvas& canvas, CGPoint middle, double half, double arm, const UIColor& color,
              double width, const UIColor& rim, double rimStrength) {
    for (const double h : {-1.0, 1.0})
        for (const double v : {-1.0, 1.0}) {
            UIBezierPath corner;
            corner.moveToPoint({middle.x + h * half, middle.y + v * (half - arm)});
            corner.addLineToPoint({middle.x + h * half, middle.y + v * half});
            corner.addLineToPoint({middle.x + h * (half - arm), middle.y + v * half});
            mark(canvas, corner, color, width, rim, rimStrength);
        }
}

/// A focusing screen: a spot ring, nine points around the middle and the corners of the crop. `lit`: the
/// points glow red.
UIImage focusingScreen(bool lit) {
    BitmapCanvas canvas({960, 540});
    const UIColor ink = lit ? kRed : kBlack, rim = lit ? kRed : kWhite;
    const double glow = lit ? 0.6 : 0.4;
    mark(canvas, UIBezierPath::bezierPathWithOvalInRect(CGRectMake(480 - 66, 270 - 66, 132, 132)), ink, 1.8,
         rim, 0.6 * glow);
    for (const CGPoint& away : {CGPoint{0, 0},
                                {-104, 0},
                                {104, 0},
                                {0, -104},
                                {0, 104},
                                {-74, -74},
                                {74, -74},
                                {-74, 74},
                                {74, 74}})
        cornered(canvas, {480 + away.x, 270 + away.y}, 12, 6.5, ink, 2.4, rim, glow);
    cornered(canvas, {480, 270}, 176, 34, ink, 2.4, rim, glow);
    if (lit) {
        canvas.drawRadialGradient(
            {480, 270}, 0, {480, 270}, 30,
            {{0, {1, 0.25, 0.15, 0.85}}, {0.3, {1, 0.12, 0.06, 0.35}}, {1, {1, 0.1, 0.05, 0}}});
    } else {
        canvas.fillPath(UIBezierPath::bezierPathWithOvalInRect(CGRectMake(478, 268, 4, 4)), ink);
    }
    return canvas.image();
}

UIImage blackCenter() {
    return focusingScreen(false);
}

UIImage redCenter() {
    return focusingScreen(true);
}

/// The square of a tap, with a tick in the middle of each side.
UIImage yellowCenter() {
    BitmapCanvas canvas({640, 640});
    UIBezierPath path = UIBezierPath::bezierPathWithRoundedRect(CGRectMake(40, 40, 560, 560), 10);
    mark(canvas, path, kYellow, 13, kBlack, 0.35);
    for (const auto& [from, to] : {std::pair<CGPoint, CGPoint>{{320, 40}, {320, 84}},
                                   {{320, 600}, {320, 556}},
                                   {{40, 320}, {84, 320}},
                                   {{600, 320}, {556, 320}}})
        canvas.strokePath(line(from, to), kYellow, 13, LineCap::round);
    return canvas.image();
}

UIImage sun() {
    BitmapCanvas canvas({256, 256});
    UIBezierPath rays;
    for (int i = 0; i < 8; ++i) {
        const double angle = i * std::numbers::pi / 4, x = std::cos(angle), y = std::sin(angle);
        rays.moveToPoint({128 + 72 * x, 128 + 72 * y});
        rays.addLineToPoint({128 + 98 * x, 128 + 98 * y});
    }
    const UIBezierPath disc = UIBezierPath::bezierPathWithOvalInRect(CGRectMake(82, 82, 92, 92));
    mark(canvas, rays, kYellow, 15, kBlack, 0.3);
    mark(canvas, disc, kYellow, 12, kBlack, 0.3);
    canvas.fillPath(disc, kYellow);
    return canvas.image();
}

/// The slider's line, faint towards its ends.
UIImage sliderLine() {
    BitmapCanvas canvas({24, 1200});
    const auto upright = [&](double width, const UIColor& c, double alpha) {
        canvas.saveState();
        canvas.clipToRect(CGRectMake(12 - width / 2, 0, width, 1200));
        const UIColor full{c.red(), c.green(), c.blue(), alpha}, none{c.red(), c.green(), c.blue(), 0};
        canvas.drawLinearGradient({0, 0}, {0, 1200}, {{0, none}, {0.18, full}, {0.82, full}, {1, none}});
        canvas.restoreState();
    };
    upright(24, kBlack, 0.10);
    upright(18, kBlack, 0.14);
    upright(12, kYellow, 1);
    return canvas.image();
}

/// The needle of the scale.
UIImage needle() {
    BitmapCanvas canvas({96, 72});
    UIBezierPath path;
    path.moveToPoint({20, 14});
    path.addLineToPoint({76, 14});
    path.addLineToPoint({48, 56});
    path.closePath();
    mark(canvas, path, kYellow, 6, kBlack, 0.4);
    canvas.fillPath(path, kYellow);
    return canvas.image();
}

/// Stops from −3 to 3 in fifths.
UIImage exposureScale() {
    BitmapCanvas canvas({1200, 96});
    for (int i = -15; i <= 15; ++i) {
        const double x = 600 + 36.5 * i, length = i % 5 == 0 ? 52 : 28;
        mark(canvas, line({x, 22}, {x, 22 + length}), i == 0 ? kYellow : kWhite, i % 5 == 0 ? 9 : 6, kBlack,
             0.4);
    }
    return canvas.image();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_CameraMarks DIRECTORY\n");
        return 1;
    }
    const struct {
        const char* name;
        UIImage (*draw)();
    } files[] = {{"camera_rec_conner1", bracket},
                 {"camera_film_blackCenter", blackCenter},
                 {"camera_film_redCenter", redCenter},
                 {"camera_film_yellowCenter", yellowCenter},
                 {"camera_film_sun", sun},
                 {"camera_film_line", sliderLine},
                 {"icon_V", needle},
                 {"icon_line", exposureScale}};
    for (const auto& [name, draw] : files) {
        std::string error;
        if (!writePNG(draw().bitmap(), fmt::format("{}/{}.png", argv[1], name), &error)) {
            fmt::print(stderr, "draw_CameraMarks: {}: {}\n", name, error);
            return 1;
        }
    }
}
