#include "QVFilterExtension/MTIFilters/Effect/Blur/QVSelectiveBlurMTIFilter.h"

#include "QVFilterExtension/Private/QVFocusBlur.h"

namespace qv {

namespace {
using Effect = QVSelectiveBlurMTIFilter;
}  // namespace

const QVFilterClass QVSelectiveBlurMTIFilterClass{
    .name = "QVSelectiveBlurMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A blur around a sharp circle in the middle of the frame",
    .factory = makeFilter<QVSelectiveBlurMTIFilter>,
    .category = QVFilterCategory::blur,
    .properties =
        {
            qvProperty<&Effect::excludeCircleRadius, &Effect::setExcludeCircleRadius>(
                "excludeCircleRadius", 0, 1, "where the blur is full, 5/8 of the frame's diagonal"),
            qvProperty<&QVEffectMTIFilter::extractValues, &QVEffectMTIFilter::setExtractValues>(
                "extractValues", "the first, 0 to 1: strength of the blur; 0.5 without"),
        },
};

QVSelectiveBlurMTIFilter::QVSelectiveBlurMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {
    QVSelectiveBlurMTIFilter::setEffectValue(effectValue());
}

void QVSelectiveBlurMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    excludeCircleRadius_ = 1.0 - double(value);
}

MTIParameters QVSelectiveBlurMTIFilter::parameters() const {
    return {{"excludeCircleRadius", float(excludeCircleRadius_)},
            {"excludeCirclePoint", MTIVector::vectorWithCGPoint({0.5, 0.5})},
            {"excludeBlurSize", 0.1875f}};
}

MTIImage QVSelectiveBlurMTIFilter::outputImage() {
    const MTIImage blurred = focusBlurredInput(*this);
    return blurred ? applyKernel({inputImage(), blurred}, parameters()) : MTIImage();
}

}  // namespace qv
