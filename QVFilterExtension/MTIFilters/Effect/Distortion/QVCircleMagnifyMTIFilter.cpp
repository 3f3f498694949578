#include "QVFilterExtension/MTIFilters/Effect/Distortion/QVCircleMagnifyMTIFilter.h"

namespace qv {

namespace {
using Effect = QVCircleMagnifyMTIFilter;
constexpr float kRadius = 0.5f;
}  // namespace

const QVFilterClass QVCircleMagnifyMTIFilterClass{
    .name = "QVCircleMagnifyMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A round magnifying glass with a coloured rim",
    .factory = makeFilter<QVCircleMagnifyMTIFilter>,
    .category = QVFilterCategory::distortion,
    .properties =
        {
            qvProperty<&Effect::magnificationNum, &Effect::setMagnificationNum>(
                "magnificationNum", 1, 10, "magnification of the glass, times"),
            qvProperty<&Effect::magnifyCenter, &Effect::setMagnifyCenter>(
                "magnifyCenter", "centre of the glass: 0,0 top left, 1,1 bottom right"),
            qvProperty<&Effect::borderColor, &Effect::setBorderColor>(
                "borderColor", "colour of the rim: red, green, blue, 0 to 1"),
        },
};

QVCircleMagnifyMTIFilter::QVCircleMagnifyMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {
    QVCircleMagnifyMTIFilter::setEffectValue(effectValue());
}

void QVCircleMagnifyMTIFilter::setEffectValue(float value) {
    magnificationNum_ = 1 + double(value);
    magnifyCenter_ = {0.5f, 0.5f};
    borderColor_ = {0.1f, 0.5f, 0.5f};
}

MTIParameters QVCircleMagnifyMTIFilter::parameters() const {
    return {{"magnificationNum", float(magnificationNum_)},
            {"centerPoint", magnifyCenter_},
            {"radius", kRadius},
            {"borderColor", borderColor_}};
}

}  // namespace qv
