#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVTurbulenceBlendMTIFilter.h"

#include "QVFilterExtension/MTIFilters/Transition/Liquid/LiquidEasing.h"

namespace qv {

namespace {
constexpr HalvesEasing kAlphaEasing{{0.5, 0, 0.83, 0.83}, {0.17, 0.17, 0.5, 1}};
}  // namespace

const QVFilterClass QVTurbulenceBlendMTIFilterClass{
    .name = "QVTurbulenceBlendMTIFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Liquid front",
    .help = "A dissolve along the front of a swirling liquid",
    .tags = {"dissolve", "swirl", "ink", "flow"},
    .factory = makeFilter<QVTurbulenceBlendMTIFilter>,
};

MTIParameters QVTurbulenceBlendMTIFilter::parameters() const {
    return {{"progress", progress()}, {"alphaChange", kAlphaEasing.peak(progress())}};
}

}  // namespace qv
