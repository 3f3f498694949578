#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVKaleidoscopeRotateFilter.h"

namespace qv {

namespace {
using Transition = QVKaleidoscopeRotateFilter;
}  // namespace

const QVFilterClass QVKaleidoscopeRotateFilterClass{
    .name = "QVKaleidoscopeRotateFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .help = "The picture turns behind a kaleidoscope",
    .factory = makeFilter<QVKaleidoscopeRotateFilter>,
    .inputs = QVFilterInputs::one,
    .properties =
        {
            qvProperty<&Transition::rotateAngle, &Transition::setRotateAngle>(
                "rotateAngle", -1000, 1000, "turn of the picture behind the mirrors, radians"),
            qvProperty<&Transition::splitNumber, &Transition::setSplitNumber>("splitNumber", 0, 256,
                                                                              "sectors around the circle"),
        },
    .kind = QVFilterKind::auxiliary,
};

MTIParameters QVKaleidoscopeRotateFilter::parameters() const {
    return {{"rotateAngle", rotateAngle_}, {"splitNum", splitNumber_}};
}

}  // namespace qv
