#include "QVFilterExtension/MTIFilters/Effect/Blur/QVTiltMTIFilter.h"

#include "QVFilterExtension/Private/QVFocusBlur.h"

namespace qv {

namespace {
using Effect = QVTiltMTIFilter;
}  // namespace

const QVFilterClass QVTiltMTIFilterClass{
    .name = "QVTiltMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A blur above and below a sharp band, as a tilted lens gives",
    .factory = makeFilter<QVTiltMTIFilter>,
    .category = QVFilterCategory::blur,
    .properties =
        {
            qvProperty<&Effect::topFocusLevel, &Effect::setTopFocusLevel>(
                "topFocusLevel", -1, 2, "upper edge of the sharp band, fraction of the frame's height"),
            qvProperty<&Effect::bottomFocusLevel, &Effect::setBottomFocusLevel>(
                "bottomFocusLevel", -1, 2, "lower edge of the sharp band, fraction of the frame's height"),
            qvProperty<&QVEffectMTIFilter::extractValues, &QVEffectMTIFilter::setExtractValues>(
                "extractValues", "the first, 0 to 1: strength of the blur; 0.5 without"),
        },
};

QVTiltMTIFilter::QVTiltMTIFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVTiltMTIFilter::setEffectValue(effectValue());
}

void QVTiltMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    topFocusLevel_ = 0.8 * double(value) + 0.0;
    bottomFocusLevel_ = 0.8 * double(value) + 0.2;
}

MTIParameters QVTiltMTIFilter::parameters() const {
    return {{"topFocusLevel", float(topFocusLevel_)},
            {"bottomFocusLevel", float(bottomFocusLevel_)},
            {"focusFallOffRate", 0.2f}};
}

MTIImage QVTiltMTIFilter::outputImage() {
    const MTIImage blurred = focusBlurredInput(*this);
    return blurred ? applyKernel({inputImage(), blurred}, parameters()) : MTIImage();
}

}  // namespace qv
