#include "QVFilterExtension/MTIFilters/Effect/Blur/QVXMotionBlurEffectMTIFilter.h"

#include <numbers>

namespace qv {

const QVFilterClass QVXMotionBlurEffectMTIFilterClass{
    .name = "QVXMotionBlurEffectMTIFilter",
    .superclass = &QVMotionBlurEffectMTIFilterClass,
    .title = "Crossed light smear",
    .help = "Two crossed diagonal smears of light over the sharp picture",
    .tags = {"motion blur", "glow", "star filter", "streaks"},
    .factory = makeFilter<QVXMotionBlurEffectMTIFilter>,
    .properties =
        {qvProperty<&QVMotionBlurEffectMTIFilter::opacity, &QVMotionBlurEffectMTIFilter::setOpacity>({
            .name = "opacity",
            .help = "opacity of the smear; above 1 it is brighter than it was",
            .maximum = 1.15,
            .unit = QVUnit::fraction,
        })},
    .ignored = {"blurAngle", "scale"},
};

void QVXMotionBlurEffectMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    setOpacity(0.5999999999999999 * double(value) + 0.55);
}

double QVXMotionBlurEffectMTIFilter::blurSize() const {
    return inputImage().size().width * 48 / 750;
}

MTIImage QVXMotionBlurEffectMTIFilter::outputImage() {
    MTIBlendFilter crossed(MTIBlendMode::normal);
    crossed.setOutputPixelFormat(outputPixelFormat());
    crossed.setInputBackgroundImage(smear(std::numbers::pi / 4));
    crossed.setInputImage(faded(smear(3 * std::numbers::pi / 4), 0.5));
    const MTIImage enlarged =
        crossed.outputImage().imageByApplyingTransform(CGAffineTransformMakeScale(1.0, 1.0));
    return screened(faded(enlarged, opacity()));
}

}  // namespace qv
