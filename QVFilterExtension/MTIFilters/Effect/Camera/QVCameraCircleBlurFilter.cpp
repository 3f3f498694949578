#include "QVFilterExtension/MTIFilters/Effect/Camera/QVCameraCircleBlurFilter.h"

#include "QVFilterExtension/Private/CameraClock.h"

namespace qv {

const QVFilterClass QVCameraCircleBlurFilterClass{
    .name = "QVCameraCircleBlurFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .title = "Camera: circular focus",
    .help = "A push towards the middle, sharp in a circle and blurred around it",
    .tags = {"focus", "bokeh", "zoom", "portrait", "depth of field"},
    .factory = makeFilter<QVCameraCircleBlurFilter>,
    .category = QVFilterCategory::camera,
};

QVCameraCircleBlurFilter::QVCameraCircleBlurFilter(const QVFilterClass& filterClass)
    : QVProgressBasedEffectMTIFilter(filterClass) {
    blurFilter_.setEffectValue(0.5f);
}

CGAffineTransform QVCameraCircleBlurFilter::getZoomTransformWithProgress(double progress) const {
    const double k = 1 + 0.5 * cameraRamp(progress, 0, 28) - 0.5 * cameraRamp(progress, 30, 5);
    return CGAffineTransformMakeScale(k, k);
}

MTIImage QVCameraCircleBlurFilter::outputImage() {
    const double p = cameraProgress(*this);
    blurFilter_.setInputImage(inputImage().imageByApplyingTransform(getZoomTransformWithProgress(p)));
    blurFilter_.setExtractValues({p <= 35.0 / 61 ? double(effectValue()) : 0.0});
    blurFilter_.setOutputPixelFormat(outputPixelFormat());
    return blurFilter_.outputImage();
}

}  // namespace qv
