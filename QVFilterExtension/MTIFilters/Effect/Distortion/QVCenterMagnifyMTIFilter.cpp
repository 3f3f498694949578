#include "QVFilterExtension/MTIFilters/Effect/Distortion/QVCenterMagnifyMTIFilter.h"

namespace qv {

namespace {
using Effect = QVCenterMagnifyMTIFilter;
}  // namespace

const QVFilterClass QVCenterMagnifyMTIFilterClass{
    .name = "QVCenterMagnifyMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A lens over the whole frame",
    .factory = makeFilter<QVCenterMagnifyMTIFilter>,
    .category = QVFilterCategory::distortion,
    .properties =
        {
            qvProperty<&Effect::magnificationNum, &Effect::setMagnificationNum>(
                "magnificationNum", 1, 20, "magnification at the centre of the lens, times"),
            qvProperty<&Effect::magnifyCenter, &Effect::setMagnifyCenter>(
                "magnifyCenter",
                "centre of the lens: from the middle of the frame in half frames, x right, y up"),
        },
};

QVCenterMagnifyMTIFilter::QVCenterMagnifyMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {
    QVCenterMagnifyMTIFilter::setEffectValue(effectValue());
}

void QVCenterMagnifyMTIFilter::setEffectValue(float value) {
    magnificationNum_ = 1 + 5 * double(value);
    magnifyCenter_ = {0.1f, 0.2f};
}

MTIParameters QVCenterMagnifyMTIFilter::parameters() const {
    return {{"magnificationNum", float(magnificationNum_)}, {"centerPoint", magnifyCenter_}};
}

}  // namespace qv
