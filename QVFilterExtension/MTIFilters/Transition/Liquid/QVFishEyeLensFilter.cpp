#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVFishEyeLensFilter.h"

#include "QVFilterExtension/MTIFilters/Transition/Liquid/LiquidEasing.h"

namespace qv {

const QVFilterClass QVFishEyeLensFilterClass{
    .name = "QVFishEyeLensFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Fisheye lens",
    .help = "The next clip grows out of the middle of the frame in a bulging lens",
    .tags = {"bulge", "zoom", "chromatic", "warp"},
    .factory = makeFilter<QVFishEyeLensFilter>,
};

MTIParameters QVFishEyeLensFilter::parameters() const {
    const double time = progress();
    const bool rises = progress() < 0.25f;
    const double eased = rises ? kEaseIn(4 * time) : kEaseOut((time - 0.25) / 0.75);
    return {{"progress", float(rises ? 0.3 * eased : 0.3 + 0.7 * eased)},
            {"rgbWeight", float(rises ? eased : 1 - eased)}};
}

}  // namespace qv
