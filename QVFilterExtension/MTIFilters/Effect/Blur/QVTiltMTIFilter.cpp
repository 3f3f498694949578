#include "QVFilterExtension/MTIFilters/Effect/Blur/QVTiltMTIFilter.h"

#include "QVFilterExtension/Private/QVFocusBlur.h"

namespace qv {

namespace {
using Effect = QVTiltMTIFilter;
}  // namespace

const QVFilterClass QVTiltMTIFilterClass{
    .name = "QVTiltMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Tilt-shift",
    .help = "A blur above and below a sharp band, as a tilted lens gives",
    .tags = {"bokeh", "miniature", "toy", "focus", "depth of field"},
    .factory = makeFilter<QVTiltMTIFilter>,
    .category = QVFilterCategory::blur,
    .properties =
        {
            qvProperty<&Effect::topFocusLevel, &Effect::setTopFocusLevel>({
                .name = "topFocusLevel",
                .title = "Upper edge",
                .help = "of the sharp band, from the top of the frame",
                .minimum = -1,
                .maximum = 2,
                .unit = QVUnit::frameSides,
                .step = 0.01,
            }),
            qvProperty<&Effect::bottomFocusLevel, &Effect::setBottomFocusLevel>({
                .name = "bottomFocusLevel",
                .title = "Lower edge",
                .help = "of the sharp band, from the top of the frame",
                .minimum = -1,
                .maximum = 2,
                .unit = QVUnit::frameSides,
                .step = 0.01,
            }),
            qvProperty<&QVEffectMTIFilter::extractValues, &QVEffectMTIFilter::setExtractValues>({
                .name = "extractValues",
                .title = "Blur",
                .help = "the first: strength of the blur; 0.5 without",
                .unit = QVUnit::fraction,
                .driver = QVPropertyDriver::host,
            }),
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
