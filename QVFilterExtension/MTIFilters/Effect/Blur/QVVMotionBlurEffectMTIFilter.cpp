#include "QVFilterExtension/MTIFilters/Effect/Blur/QVVMotionBlurEffectMTIFilter.h"

#include <numbers>

namespace qv {

const QVFilterClass QVVMotionBlurEffectMTIFilterClass{
    .name = "QVVMotionBlurEffectMTIFilter",
    .superclass = &QVMotionBlurEffectMTIFilterClass,
    .title = "Upright light smear",
    .help = "An upright smear of light over the sharp picture",
    .tags = {"motion blur", "glow", "streaks", "rain"},
    .factory = makeFilter<QVVMotionBlurEffectMTIFilter>,
};

QVVMotionBlurEffectMTIFilter::QVVMotionBlurEffectMTIFilter(const QVFilterClass& filterClass)
    : QVMotionBlurEffectMTIFilter(filterClass) {
    setBlurAngle(std::numbers::pi / 2);
}

void QVVMotionBlurEffectMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    const bool isFaint = value < kDefaultEffectValue;
    const double width = 2.0f * value;
    setScale(isFaint ? 1.3 - 0.2 * width : 1.1);
    setOpacity(isFaint ? 0.7 * width + 0.3 : 1.0);
}

}  // namespace qv
