#include "QVFilterExtension/MTIFilters/Transition/Motion/QVSmoothRotateTransitionMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Transition = QVSmoothRotateTransitionMTIFilter;
constexpr std::array<std::string_view, 4> kTypes = {"clockwise", "anticlockwise", "clockwise zooming in",
                                                    "anticlockwise zooming out"};
}  // namespace

const QVFilterClass QVSmoothRotateTransitionMTIFilterClass{
    .name = "QVSmoothRotateTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Smooth turn",
    .help = "One fast turn through both clips",
    .tags = {"rotate", "spin", "whip", "motion blur"},
    .factory = makeFilter<QVSmoothRotateTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::type, &Transition::setType>({
                .name = "type",
                .title = "Turn",
                .help = "which way it turns",
                .variants = kTypes,
            }),
        },
};

MTIParameters QVSmoothRotateTransitionMTIFilter::parameters() const {
    return {{"progress", easeInOutHeavy(progress())}, {"type", type_}, {"ratio", ratio()}};
}

}  // namespace qv
