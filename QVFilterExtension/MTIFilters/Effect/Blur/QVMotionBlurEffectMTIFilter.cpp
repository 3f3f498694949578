#include "QVFilterExtension/MTIFilters/Effect/Blur/QVMotionBlurEffectMTIFilter.h"

#include <utility>

namespace qv {

namespace {
using Effect = QVMotionBlurEffectMTIFilter;
}  // namespace

const QVFilterClass QVMotionBlurEffectMTIFilterClass{
    .name = "QVMotionBlurEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A sideways smear of light over the sharp picture",
    .factory = makeFilter<QVMotionBlurEffectMTIFilter>,
    .category = QVFilterCategory::blur,
    .properties =
        {
            qvProperty<&Effect::blurAngle, &Effect::setBlurAngle>(
                "blurAngle", -1000, 1000,
                "direction of the smear, radians anticlockwise from the horizontal"),
            qvProperty<&Effect::scale, &Effect::setScale>("scale", 0.1, 10, "enlargement of the smear"),
            qvProperty<&Effect::opacity, &Effect::setOpacity>("opacity", 0, 1, "opacity of the smear"),
        },
};

QVMotionBlurEffectMTIFilter::QVMotionBlurEffectMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {}

void QVMotionBlurEffectMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    const bool isFaint = value < kDefaultEffectValue;
    const double width = 2.0f * value;
    setScale(isFaint ? 1.3 - 0.3 * width : 1.0);
    setOpacity(isFaint ? 0.7 * width + 0.3 : 1.0);
}

double QVMotionBlurEffectMTIFilter::blurSize() const {
    return inputImage().size().width * (48 * double(effectValue())) / 750;
}

MTIImage QVMotionBlurEffectMTIFilter::outputImage() {
    const MTIImage enlarged =
        smear(blurAngle()).imageByApplyingTransform(CGAffineTransformMakeScale(scale(), scale()));
    return screened(faded(enlarged, opacity()));
}

MTIImage QVMotionBlurEffectMTIFilter::smear(double angle) {
    blurFilter_.setInputImage(inputImage());
    blurFilter_.setOutputPixelFormat(outputPixelFormat());
    blurFilter_.setBlurSize(blurSize());
    blurFilter_.setBlurAngle(angle);
    return blurFilter_.outputImage();
}

MTIImage QVMotionBlurEffectMTIFilter::faded(MTIImage image, double opacity) {
    opacityFilter_.setInputImage(std::move(image));
    opacityFilter_.setOutputPixelFormat(outputPixelFormat());
    opacityFilter_.setOpacity(float(opacity));
    return opacityFilter_.outputImage();
}

MTIImage QVMotionBlurEffectMTIFilter::screened(MTIImage smear) {
    constexpr float kExposure = -0.18f;
    blendFilter_.setInputBackgroundImage(inputImage());
    blendFilter_.setInputImage(std::move(smear));
    blendFilter_.setOutputPixelFormat(outputPixelFormat());

    auto exposure = std::make_shared<MTIExposureFilter>();
    exposure->setInputImage(blendFilter_.outputImage());
    exposure->setOutputPixelFormat(outputPixelFormat());
    exposure->setExposure(kExposure);
    exposureFilter_ = std::move(exposure);
    return exposureFilter_->outputImage();
}

}  // namespace qv
