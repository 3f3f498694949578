#include "QVFilterExtension/MTIFilters/Transition/Motion/QVSmoothRadialTransitionMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Transition = QVSmoothRadialTransitionMTIFilter;
constexpr std::array<std::string_view, 4> kDirections = {"left", "right", "up", "down"};
}  // namespace

const QVFilterClass QVSmoothRadialTransitionMTIFilterClass{
    .name = "QVSmoothRadialTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Smooth swing",
    .help = "One fast swing through both clips about a point beyond the frame",
    .tags = {"whip pan", "rotate", "radial", "motion blur"},
    .factory = makeFilter<QVSmoothRadialTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::direction, &Transition::setDirection>({
                .name = "direction",
                .title = "Direction",
                .help = "where the picture swings to",
                .variants = kDirections,
            }),
        },
};

MTIParameters QVSmoothRadialTransitionMTIFilter::parameters() const {
    return {{"progress", easeInOutHeavy(progress())}, {"direction", direction_}};
}

}  // namespace qv
