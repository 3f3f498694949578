#include "QVFilterExtension/MTIFilters/Effect/Camera/QVCameraRECFilter.h"

#include <cmath>
#include <numbers>

#include "Platform/Drawing/BitmapCanvas.h"
#include "Platform/ImageGraph/ImageNode.h"
#include "QVFilterExtension/Private/CameraClock.h"
#include "QVFilterExtension/Private/QVAssetCache.h"
#include "QVFilterExtension/Private/UIFont+QVMTIFilter.h"

namespace qv {

namespace {

constexpr const char* kCorner = "camera_rec_conner1.png";

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

const QVFilterClass QVCameraRECFilterClass{
    .name = "QVCameraRECFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .title = "Camera: start recording",
    .help = "A viewfinder finds its focus: brackets close in, a red dot blinks beside REC",
    .tags = {"viewfinder", "rec", "camcorder", "focus", "recording", "hud"},
    .factory = makeFilter<QVCameraRECFilter>,
    .category = QVFilterCategory::camera,
};

void QVCameraRECFilter::setInputImage(MTIImage image) {
    if (image.size() != inputImage().size()) {
        constantImage_ = {};
        redSpotTexture_ = whiteSpotTexture_ = nullptr;
        centerDistance_.reset();
    }
    QVProgressBasedEffectMTIFilter::setInputImage(std::move(image));
}

UIImage QVCameraRECFilter::getPointWithColor(const UIColor& color) const {
    const double diameter = viewfinderScale(inputImage().size()) * 22;
    BitmapCanvas canvas({2 * diameter, 2 * diameter}, false, 0.5);
    if (!canvas) return {};
    canvas.fillPath(
        UIBezierPath::bezierPathWithOvalInRect(CGRectMake(diameter / 2, diameter / 2, diameter, diameter)),
        color);
    return canvas.image();
}

SpiritParam::Texture QVCameraRECFilter::spotTexture(const UIColor& color) const {
    return SpiritParam::spiritTextureWithImage(getPointWithColor(color));
}

const SpiritParam::Texture& QVCameraRECFilter::redSpotTexture() {
    if (!redSpotTexture_) redSpotTexture_ = spotTexture({1, 0, 0});
    return redSpotTexture_;
}

const SpiritParam::Texture& QVCameraRECFilter::whiteSpotTexture() {
    if (!whiteSpotTexture_) whiteSpotTexture_ = spotTexture(UIColor::whiteColor());
    return whiteSpotTexture_;
}

const MTIImage& QVCameraRECFilter::constantImage() {
    if (!constantImage_) {
        const CGSize size = inputImage().size();
        const double s = viewfinderScale(size);
        BitmapCanvas canvas(size);
        canvas.drawText("REC", {s * 15, s * 30}, qv_fontWithFileName("Aldrich-Regular.ttf", s * 16),
                        UIColor::whiteColor());
        constantImage_ = imageOfLayer(canvas.image());
    }
    return constantImage_;
}

MTIImage QVCameraRECFilter::getCenterImage() {
    const UIImage corner = assets().uiImageNamed(kCorner);
    if (!corner) return {};
    const double p = cameraProgress(*this);
    const CGSize size = inputImage().size();
    const double s = viewfinderScale(size);
    const double d = s * (35 + 25 * cameraRamp(p, 0, 10) - 25 * cameraRamp(p, 25, 5));
    if (centerDistance_ == d) return centerImage_;

    BitmapCanvas canvas(size);
    std::vector<PixelRect> covered;
    const CGPoint corners[] = {{-d, -d}, {d, -d}, {d, d}, {-d, d}};
    for (int i = 0; i < 4; ++i) {
        canvas.saveState();
        canvas.concatTransform(
            CGAffineTransformMakeTranslation(size.width / 2 + corners[i].x, size.height / 2 + corners[i].y));
        canvas.concatTransform(CGAffineTransformMakeRotation(i * std::numbers::pi / 2));
        canvas.concatTransform(CGAffineTransformMakeTranslation(-20 * s, -20 * s));
        canvas.drawImage(corner, CGRectMake(0, 0, 40 * s, 40 * s));
        canvas.restoreState();
        const auto start = [&](double middle) { return int(std::floor(middle - 20 * s)) - 1; };
        const int side = int(std::ceil(40 * s)) + 3;  // with the pixels that its edges share
        covered.push_back(
            {start(size.width / 2 + corners[i].x), start(size.height / 2 + corners[i].y), side, side});
    }
    centerImage_ = imageCoveredWithin(
        MTIImage::imageWithUIImage(canvas.image(), MTIAlphaType::premultiplied, kCorner), std::move(covered));
    centerDistance_ = d;
    return centerImage_;
}

CGAffineTransform QVCameraRECFilter::getZoomTransformWithProgress(double progress) const {
    const double k = 1 + 0.5 * cameraRamp(progress, 0, 10) - 0.5 * cameraRamp(progress, 30, 5);
    return CGAffineTransformMakeScale(k, k);
}

std::vector<SpiritParam> QVCameraRECFilter::spiritParams() {
    const double e = effectValue();
    const double period = e < 0.5 ? 2 - 2 * e : 1.5 - e, half = period / 2;
    const double phase = iTime() - period * std::floor(iTime() / period);
    const double alpha =
        isPhoto() ? 1.0 : smoothStep(phase / half) - smoothStep((phase - half) / (period - half));

    const CGSize size = inputImage().size();
    const double s = viewfinderScale(size);
    const double k = shorterSide(size) * 22 / 375 / size.width;
    const CGAffineTransform middle = CGAffineTransformMakeScale(k, k);
    const CGAffineTransform besideCaption = CGAffineTransformConcat(
        middle,
        CGAffineTransformMakeTranslation(120 * s / size.width - 1, (size.height - 73 * s) / size.width));
    return {SpiritParam::paramWithTrans(besideCaption, float(alpha), redSpotTexture()),
            SpiritParam::paramWithTrans(middle, 1.0f, whiteSpotTexture())};
}

MTIImage QVCameraRECFilter::outputImage() {
    if (!inputImage()) return {};
    const double p = cameraProgress(*this), side = shorterSide(inputImage().size());
    const auto blurred = [this](const MTIImage& image, double radius) {
        blurFilter_.setInputImage(image);
        blurFilter_.setRadius(float(radius));
        return blurFilter_.outputImage();
    };
    const auto laidOver = [this](const MTIImage& picture, const MTIImage& layer) {
        if (!layer) return picture;
        blendFilter_.setInputBackgroundImage(picture);
        blendFilter_.setInputImage(layer);
        return blendFilter_.outputImage();
    };

    const double focus = (19 * double(effectValue()) + 1) * side / 720;
    const MTIImage soft = blurred(inputImage(), focus * (cameraRamp(p, 0, 5) - cameraRamp(p, 30, 5)));
    const MTIImage zoomed = soft.imageByApplyingTransform(getZoomTransformWithProgress(p));
    const MTIImage settling =
        blurred(laidOver(zoomed, getCenterImage()), 2 * side / 720 * (1 - cameraRamp(p, 0, 15)));

    spiritFilter_.setInputImage(laidOver(settling, constantImage()));
    spiritFilter_.setParams(spiritParams());
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return spiritFilter_.outputImage();
}

}  // namespace qv
