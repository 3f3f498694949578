#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVOpticaCompensationFilter.h"

#include "QVFilterExtension/MTIFilters/Transition/Liquid/LiquidEasing.h"

namespace qv {

const QVFilterClass QVOpticaCompensationFilterClass{
    .name = "QVOpticaCompensationFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Lens punch",
    .help = "A punch through a swelling lens into the next clip",
    .tags = {"zoom", "bulge", "fisheye", "warp"},
    .factory = makeFilter<QVOpticaCompensationFilter>,
};

MTIParameters QVOpticaCompensationFilter::parameters() const {
    const double time = 2.0 * double(progress());
    // The first half reaches its end a little early, the second sets out a little late.
    const double rhythm = progress() < 0.5f ? EaseCurve{1, 0, 1, 0}(time + 0.01)
                                            : 0.5 + 0.5 * EaseCurve{0, 1, 0.5, 1}(time - 1 - 0.01);
    return {{"progress", progress()}, {"transitionRhythm", rhythm}};
}

}  // namespace qv
