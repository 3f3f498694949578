#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVKaleidoscopeMoveFilter.h"

#include "QVFilterExtension/MTIFilters/Transition/Liquid/LiquidEasing.h"

namespace qv {

namespace {
constexpr HalvesEasing kEasing;
}  // namespace

const QVFilterClass QVKaleidoscopeMoveFilterClass{
    .name = "QVKaleidoscopeMoveFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Gliding kaleidoscope",
    .help = "The picture folds into a gliding kaleidoscope and unfolds as the next clip",
    .tags = {"mirror", "psychedelic", "chromatic", "pattern"},
    .factory = makeFilter<QVKaleidoscopeMoveFilter>,
};

MTIParameters QVKaleidoscopeMoveFilter::parameters() const {
    return {{"progress", float(kEasing.halfScaled(progress()))},
            {"rgbWeight", float(kEasing.peak(progress()))}};
}

}  // namespace qv
