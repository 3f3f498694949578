#include "QVFilterExtension/MTIFilters/Effect/Distortion/QVCircleMagnifyMTIFilter.h"

namespace qv {

namespace {
using Effect = QVCircleMagnifyMTIFilter;
constexpr float kRadius = 0.5f;

/// The rim's three numbers as a colour.
QVProperty rimColor(QVProperty facts) {
    facts.type = QVPropertyType::color;
    facts.get = [](const QVMTIFilter& filter) -> QVPropertyValue {
        const MTIVector& color = static_cast<const Effect&>(filter).borderColor();
        return std::vector<UIColor>{{color[0], color[1], color[2]}};
    };
    facts.set = [](QVMTIFilter& filter, const QVPropertyValue& value) {
        const UIColor& color = std::get<std::vector<UIColor>>(value).front();
        static_cast<Effect&>(filter).setBorderColor(QVMTIFilter::rgbVectorFromUIColor(color));
    };
    return facts;
}

}  // namespace

const QVFilterClass QVCircleMagnifyMTIFilterClass{
    .name = "QVCircleMagnifyMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Magnifying glass",
    .help = "A round magnifying glass with a coloured rim and a handle",
    .tags = {"zoom", "loupe", "circle", "detail"},
    .factory = makeFilter<QVCircleMagnifyMTIFilter>,
    .category = QVFilterCategory::distortion,
    .properties =
        {
            qvProperty<&Effect::magnificationNum, &Effect::setMagnificationNum>({
                .name = "magnificationNum",
                .title = "Magnification",
                .help = "in the glass",
                .minimum = 1,
                .maximum = 10,
                .unit = QVUnit::factor,
            }),
            qvProperty<&Effect::magnifyCenter, &Effect::setMagnifyCenter>({
                .name = "magnifyCenter",
                .title = "Centre",
                .help = "centre of the glass, from the top left of the frame",
                .unit = QVUnit::frameSides,
            }),
            rimColor({.name = "borderColor", .title = "Rim colour", .help = "colour of the rim"}),
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
