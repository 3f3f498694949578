#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVKaleidoscopeRotateFilter.h"

#include <numbers>

namespace qv {

namespace {
using Transition = QVKaleidoscopeRotateFilter;
}  // namespace

const QVFilterClass QVKaleidoscopeRotateFilterClass{
    .name = "QVKaleidoscopeRotateFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Kaleidoscope mirrors",
    .help = "The picture turns behind a kaleidoscope",
    .tags = {"reflection", "pattern", "rotate"},
    .factory = makeFilter<QVKaleidoscopeRotateFilter>,
    .inputs = {{kInputImage1}},
    .properties =
        {
            qvProperty<&Transition::rotateAngle, &Transition::setRotateAngle>({
                .name = "rotateAngle",
                .title = "Angle",
                .help = "turn of the picture behind the mirrors",
                .minimum = -2 * std::numbers::pi,
                .maximum = 2 * std::numbers::pi,
                .unit = QVUnit::radians,
                .step = 0.01,
            }),
            qvProperty<&Transition::splitNumber, &Transition::setSplitNumber>({
                .name = "splitNumber",
                .title = "Sectors",
                .help = "sectors around the circle",
                .maximum = 64,
                .unit = QVUnit::count,
                .step = 1,
            }),
        },
    .kind = QVFilterKind::auxiliary,
};

MTIParameters QVKaleidoscopeRotateFilter::parameters() const {
    return {{"rotateAngle", rotateAngle_}, {"splitNum", splitNumber_}};
}

}  // namespace qv
