#include "QVFilterExtension/MTIFilters/Effect/Distortion/QVCenterMagnifyMTIFilter.h"

namespace qv {

namespace {
using Effect = QVCenterMagnifyMTIFilter;
}  // namespace

const QVFilterClass QVCenterMagnifyMTIFilterClass{
    .name = "QVCenterMagnifyMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Magnifying lens",
    .help = "A large lens before the frame, with coloured fringes",
    .tags = {"zoom", "fisheye", "loupe", "lens"},
    .factory = makeFilter<QVCenterMagnifyMTIFilter>,
    .category = QVFilterCategory::distortion,
    .properties =
        {
            qvProperty<&Effect::magnificationNum, &Effect::setMagnificationNum>({
                .name = "magnificationNum",
                .title = "Magnification",
                .help = "power of the glass: a third of what it adds is seen at its centre",
                .minimum = 1,
                .maximum = 20,
                .unit = QVUnit::factor,
            }),
            qvProperty<&Effect::magnifyCenter, &Effect::setMagnifyCenter>({
                .name = "magnifyCenter",
                .title = "Centre",
                .help = "centre of the lens, from the middle of the frame: x right, y up",
                .minimum = -1,
                .unit = QVUnit::halfFrameSides,
            }),
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
