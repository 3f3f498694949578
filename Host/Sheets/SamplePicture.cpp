#include "Host/Sheets/SamplePicture.h"

#include <algorithm>
#include <cmath>

#include "Host/Clips/PictureFile.h"
#include "Platform/Drawing/BitmapCanvas.h"

namespace qv::host {

namespace {

/// Colours of one scene, from the sky down.
struct Palette {
    UIColor zenith, horizon, sun, far, near, grass, coat, skin, hair;
};

Palette paletteOf(SampleLight light) {
    if (light == SampleLight::day) {
        return {{0.16, 0.42, 0.78}, {0.80, 0.90, 0.96}, {1.0, 0.97, 0.82},
                {0.45, 0.58, 0.70}, {0.22, 0.42, 0.34}, {0.36, 0.56, 0.20},
                {0.82, 0.20, 0.18}, {0.93, 0.74, 0.60}, {0.22, 0.13, 0.09}};
    }
    return {{0.12, 0.10, 0.30}, {0.98, 0.56, 0.28}, {1.0, 0.86, 0.55},
            {0.42, 0.26, 0.42}, {0.18, 0.14, 0.28}, {0.14, 0.16, 0.14},
            {0.16, 0.42, 0.55}, {0.78, 0.52, 0.42}, {0.12, 0.08, 0.08}};
}

/// A skyline of three sine waves; `y` and `height` in shares of the picture's height.
UIBezierPath ridge(double width, double height, double y, double relief, double phase) {
    constexpr int kSteps = 160;
    UIBezierPath path;
    path.moveToPoint({0, height});
    for (int i = 0; i <= kSteps; ++i) {
        const double x = double(i) / kSteps;
        const double wave = 0.55 * std::sin(5.1 * x + phase) + 0.3 * std::sin(11.7 * x + 2.3 * phase) +
                            0.15 * std::sin(31.0 * x + phase);
        path.addLineToPoint({x * width, height * (y - relief * wave)});
    }
    path.addLineToPoint({width, height});
    path.closePath();
    return path;
}

struct Person {
    UIBezierPath coat, head, hair;
};

/// A bust in the lower middle, `unit` being a hundredth of the picture's shorter side.
Person person(double width, double height) {
    const double unit = std::min(width, height) / 100, x = width * 0.5;
    const auto at = [&](double dx, double up) { return CGPoint{x + dx * unit, height - up * unit}; };
    Person person;
    person.coat.moveToPoint(at(-24, 0));
    person.coat.addCurveToPoint(at(-7, 36), at(-24, 22), at(-20, 33));
    person.coat.addLineToPoint(at(7, 36));
    person.coat.addCurveToPoint(at(24, 0), at(20, 33), at(24, 22));
    person.coat.closePath();
    const auto oval = [&](double up, double halfWidth, double halfHeight) {
        const CGPoint center = at(0, up);
        return UIBezierPath::bezierPathWithOvalInRect(
            CGRectMake(center.x - halfWidth * unit, center.y - halfHeight * unit, 2 * halfWidth * unit,
                       2 * halfHeight * unit));
    };
    person.hair = oval(52, 12.5, 14);
    person.head = oval(48, 9.5, 12);
    return person;
}

}  // namespace

Bitmap samplePicture(int width, int height, SampleLight light) {
    const double w = width, h = height;
    BitmapCanvas canvas({w, h}, true);
    if (!canvas) return {};
    const Palette colors = paletteOf(light);
    canvas.drawLinearGradient({0, 0}, {0, h * 0.62}, {{0, colors.zenith}, {1, colors.horizon}});
    const CGPoint sun{w * 0.77, h * 0.24};
    const UIColor glow{colors.sun.red(), colors.sun.green(), colors.sun.blue(), 0.65};
    const UIColor faded{colors.sun.red(), colors.sun.green(), colors.sun.blue(), 0};
    canvas.drawRadialGradient(sun, 0, sun, h * 0.4, {{0, glow}, {1, faded}});
    const double r = h * 0.055;
    canvas.fillPath(UIBezierPath::bezierPathWithOvalInRect(CGRectMake(sun.x - r, sun.y - r, 2 * r, 2 * r)),
                    colors.sun);
    canvas.fillPath(ridge(w, h, 0.56, 0.10, 0.6), colors.far);
    canvas.fillPath(ridge(w, h, 0.66, 0.05, 2.1), colors.near);
    canvas.fillPath(ridge(w, h, 0.78, 0.02, 4.0), colors.grass);
    const Person figure = person(w, h);
    canvas.fillPath(figure.hair, colors.hair);
    canvas.fillPath(figure.coat, colors.coat);
    canvas.fillPath(figure.head, colors.skin);
    return canvas.image().bitmap();
}

PixelBuffer sampleMask(int width, int height) {
    BitmapCanvas canvas({double(width), double(height)}, true);
    if (!canvas) return {};
    const Person figure = person(width, height);
    for (const UIBezierPath* part : {&figure.hair, &figure.coat, &figure.head}) {
        canvas.fillPath(*part, UIColor::whiteColor());
    }
    return grayFromPicture(canvas.image().bitmap());
}

}  // namespace qv::host
