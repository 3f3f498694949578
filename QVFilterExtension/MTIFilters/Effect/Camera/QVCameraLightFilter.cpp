#include "QVFilterExtension/MTIFilters/Effect/Camera/QVCameraLightFilter.h"

#include <numbers>

#include "Platform/Drawing/BitmapCanvas.h"
#include "QVFilterExtension/Private/CameraClock.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

// Points of the viewfinder, from the frame's middle.
constexpr double kSquare = 80, kSun = 30, kSunX = 64, kSunReach = 46, kGap = 17;
constexpr double kLineWidth = 3, kLineHeight = 150;
constexpr double kScaleWidth = 150, kScaleY = -112, kNeedleWidth = 12, kNeedleReach = 60, kNeedleY = -99;

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

/// How visible the marks are that come after the square.
double marksOpacity(double progress) {
    return cameraRamp(progress, 8, 3) - cameraRamp(progress, 55, 4);
}

}  // namespace

const QVFilterClass QVCameraLightFilterClass{
    .name = "QVCameraLightFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .title = "Camera: exposure",
    .help = "A tap focuses, and a sun on a slider floods the picture with light, then darkens it",
    .tags = {"exposure", "brightness", "focus", "phone", "slider", "glow", "hud"},
    .factory = makeFilter<QVCameraLightFilter>,
    .category = QVFilterCategory::camera,
};

double QVCameraLightFilter::sunPlace() const {
    const double p = cameraProgress(*this);
    return cameraRamp(p, 13, 12) - 1.45 * cameraRamp(p, 31, 12) + 0.45 * cameraRamp(p, 47, 7);
}

double QVCameraLightFilter::exposure() const {
    return (0.5 + 1.1 * double(effectValue())) * sunPlace();
}

MTIImage QVCameraLightFilter::maskLineImage() const {
    return assets().fittedImage(
        "camera_film_line.png", inputImage().size(), [](const UIImage& line, CGSize size) {
            const double s = viewfinderScale(size);
            BitmapCanvas canvas(size);
            canvas.drawImage(
                line, CGRectMake(size.width / 2 + (kSunX - kLineWidth / 2) * s,
                                 size.height / 2 - kLineHeight / 2 * s, kLineWidth * s, kLineHeight * s));
            return canvas.image();
        });
}

std::vector<SpiritParam> QVCameraLightFilter::spiritParams() const {
    const double p = cameraProgress(*this), marks = marksOpacity(p), sun = sunPlace();
    const CGSize size = inputImage().size();
    const double point = 2 * viewfinderScale(size) / size.width;  // in sprite space
    std::vector<SpiritParam> sprites;
    const auto add = [&](const char* asset, double width, double x, double y, double alpha, double turn = 0) {
        const double k = width / 2 * point;
        const CGAffineTransform turned =
            CGAffineTransformConcat(CGAffineTransformMakeScale(k, k), CGAffineTransformMakeRotation(turn));
        const CGAffineTransform moved =
            CGAffineTransformConcat(turned, CGAffineTransformMakeTranslation(x * point, y * point));
        if (alpha > 0)
            sprites.push_back(SpiritParam::paramWithTrans(moved, float(alpha), assets().textureNamed(asset)));
    };
    // The square lands, blinks once and waits at half of its strength while the sun is held.
    const double landed = cameraRamp(p, 2, 6);
    const double blink = cameraRamp(p, 8, 1.5) - cameraRamp(p, 9.5, 1.5);
    const double waiting = cameraRamp(p, 13, 3) - cameraRamp(p, 48, 4);
    add("camera_film_yellowCenter.png", kSquare * (1.6 - 0.6 * landed), 0, 0,
        (cameraRamp(p, 2, 3) - cameraRamp(p, 55, 4)) * (1 - 0.7 * blink) * (1 - 0.3 * waiting));
    add("camera_film_sun.png", kSun * (1 + 0.18 * sun), kSunX, kSunReach * sun, marks,
        -0.5 * std::numbers::pi * sun);
    add("icon_line.png", kScaleWidth, 0, kScaleY, 0.9 * marks);
    add("icon_V.png", kNeedleWidth, kNeedleReach * sun, kNeedleY, marks);
    return sprites;
}

MTIParameters QVCameraLightFilter::parameters() const {
    const CGSize size = inputImage().size();
    const double s = viewfinderScale(size) / size.height, sun = 0.5 - kSunReach * sunPlace() * s;
    return {{"exposure", float(exposure())},
            {"lineOpacity", float(0.85 * marksOpacity(cameraProgress(*this)))},
            {"topCenter", float(sun - kGap * s)},
            {"buttomCenter", float(sun + kGap * s)}};
}

MTIImage QVCameraLightFilter::outputImage() {
    if (!inputImage()) return {};
    const double p = cameraProgress(*this), side = shorterSide(inputImage().size());
    const auto blurred = [this](const MTIImage& image, double radius) {
        blurFilter_.setInputImage(image);
        blurFilter_.setRadius(float(radius));
        return blurFilter_.outputImage();
    };
    const MTIImage focused = blurred(inputImage(), 6 * side / 720 * (1 - cameraRamp(p, 3, 6)));
    const MTIImage glow = exposure() > 0 ? blurred(focused, side / 24) : focused;

    spiritFilter_.setInputImage(applyKernel({focused, glow, maskLineImage()}, parameters()));
    spiritFilter_.setParams(spiritParams());
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return spiritFilter_.outputImage();
}

}  // namespace qv
