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
    .help = "One fast turn through both clips",
    .factory = makeFilter<QVSmoothRotateTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::type, &Transition::setType>("type", 0, kTypes.size() - 1,
                                                                "which way it turns", kTypes),
        },
};

MTIParameters QVSmoothRotateTransitionMTIFilter::parameters() const {
    return {{"progress", easeInOutHeavy(progress())}, {"type", type_}, {"ratio", ratio()}};
}

}  // namespace qv
