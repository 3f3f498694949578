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
    .help = "One fast swing through both clips about a point beyond the frame",
    .factory = makeFilter<QVSmoothRadialTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::direction, &Transition::setDirection>(
                "direction", 0, kDirections.size() - 1, "where the picture swings to", kDirections),
        },
};

MTIParameters QVSmoothRadialTransitionMTIFilter::parameters() const {
    return {{"progress", easeInOutHeavy(progress())}, {"direction", direction_}};
}

}  // namespace qv
