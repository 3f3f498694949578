#include "QVFilterExtension/MTIFilters/Effect/Camera/QVCameraFreezeMTIFilter.h"

#include <numbers>

#include "QVFilterExtension/Private/CameraClock.h"

namespace qv {

const QVFilterClass QVCameraFreezeMTIFilterClass{
    .name = "QVCameraFreezeMTIFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .title = "Camera: snapshot",
    .help = "A flash, and the picture becomes a print that tilts over its blurred copy and returns",
    .tags = {"freeze", "photo", "polaroid", "print", "flash", "frame"},
    .factory = makeFilter<QVCameraFreezeMTIFilter>,
    .category = QVFilterCategory::camera,
};

double QVCameraFreezeMTIFilter::lift(double progress) const {
    // The divisors are differences, as the phases' ends are.
    const double a = (1 - durationProgress_) / 4, b = 1 - 2 * a;
    return smoothStep((progress - a) / (2 * a - a)) - smoothStep((progress - b) / ((1 - a) - b));
}

CGAffineTransform QVCameraFreezeMTIFilter::getZoomTransformWithProgress(double progress) const {
    const double k = 1 - 0.3 * lift(progress);
    return CGAffineTransformMakeScale(k, k);
}

CGAffineTransform QVCameraFreezeMTIFilter::getRotateTransformWithProgress(double progress) const {
    return CGAffineTransformMakeRotation(std::numbers::pi / 30 * lift(progress));
}

CGAffineTransform QVCameraFreezeMTIFilter::getTransformWithProgress(double progress) const {
    return CGAffineTransformConcat(getZoomTransformWithProgress(progress),
                                   getRotateTransformWithProgress(progress));
}

MTIParameters QVCameraFreezeMTIFilter::parameters() const {
    return {{"progress", float(cameraProgress(*this))}, {"durationProgress", float(durationProgress_)}};
}

MTIImage QVCameraFreezeMTIFilter::outputImage() {
    durationProgress_ = 0.33 * double(effectValue()) + 0.17;
    blurFilter_.setInputImage(inputImage());
    blurFilter_.setRadius(10.0f);
    backGroundImage_ = blurFilter_.outputImage();
    freezeImage_ = applyKernel({inputImage()}, parameters());

    blendFilter_.setInputImage(
        freezeImage_.imageByApplyingTransform(getTransformWithProgress(cameraProgress(*this))));
    blendFilter_.setInputBackgroundImage(backGroundImage_);
    blendFilter_.setOutputPixelFormat(outputPixelFormat());
    return blendFilter_.outputImage();
}

}  // namespace qv
