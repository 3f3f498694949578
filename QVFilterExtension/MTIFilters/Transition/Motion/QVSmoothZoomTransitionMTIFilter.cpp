#include "QVFilterExtension/MTIFilters/Transition/Motion/QVSmoothZoomTransitionMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Transition = QVSmoothZoomTransitionMTIFilter;
constexpr std::array<std::string_view, 4> kTypes = {"in", "out", "in and back", "out and back"};
}  // namespace

const QVFilterClass QVSmoothZoomTransitionMTIFilterClass{
    .name = "QVSmoothZoomTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Smooth zoom",
    .help = "One fast zoom through both clips",
    .tags = {"zoom in", "zoom out", "whip", "motion blur"},
    .factory = makeFilter<QVSmoothZoomTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::type, &Transition::setType>({
                .name = "type",
                .title = "Zoom",
                .help = "which way it zooms",
                .variants = kTypes,
            }),
        },
};

MTIParameters QVSmoothZoomTransitionMTIFilter::parameters() const {
    return {{"progress", easeInOutHeavy(progress())}, {"type", type_}, {"ratio", ratio()}};
}

}  // namespace qv
