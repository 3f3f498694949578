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
    .help = "One fast zoom through both clips",
    .factory = makeFilter<QVSmoothZoomTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::type, &Transition::setType>("type", 0, kTypes.size() - 1,
                                                                "which way it zooms", kTypes),
        },
};

MTIParameters QVSmoothZoomTransitionMTIFilter::parameters() const {
    return {{"progress", easeInOutHeavy(progress())}, {"type", type_}, {"ratio", ratio()}};
}

}  // namespace qv
