#include "QVFilterExtension/MTIFilters/Effect/Blur/QVMotionBlurEffectMTIFilter.h"

#include <numbers>
#include <utility>

namespace qv {

namespace {
using Effect = QVMotionBlurEffectMTIFilter;
}  // namespace

const QVFilterClass QVMotionBlurEffectMTIFilterClass{
    .name = "QVMotionBlurEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Sideways light smear",
    .help = "A sideways smear of light over the sharp picture",
    .tags = {"motion blur", "glow", "speed", "streaks"},
    .factory = makeFilter<QVMotionBlurEffectMTIFilter>,
    .category = QVFilterCategory::blur,
    .properties =
        {
            qvProperty<&Effect::blurAngle, &Effect::setBlurAngle>({
                .name = "blurAngle",
                .title = "Direction",
                .help = "of the smear, anticlockwise from the horizontal",
                .minimum = -2 * std::numbers::pi,
                .maximum = 2 * std::numbers::pi,
                .unit = QVUnit::radians,
                .step = 0.01,
            }),
            qvProperty<&Effect::scale, &Effect::setScale>({
                .name = "scale",
                .title = "Enlargement",
                .help = "enlargement of the smear",
                .minimum = 0.1,
                .maximum = 10,
                .unit = QVUnit::factor,
                .step = 0.05,
            }),
            qvProperty<&Effect::opacity, &Effect::setOpacity>({
                .name = "opacity",
                .help = "opacity of the smear",
                .unit = QVUnit::fraction,
            }),
        },
};

QVMotionBlurEffectMTIFilter::QVMotionBlurEffectMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {
    blurFilter_.setLightsOnly(true);
}

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
