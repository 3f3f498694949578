#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVRotationWarpFilter.h"

#include "QVFilterExtension/MTIFilters/Transition/Liquid/LiquidEasing.h"

namespace qv {

const QVFilterClass QVRotationWarpFilterClass{
    .name = "QVRotationWarpFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Wind-up warp",
    .help = "The picture winds up around its middle and unwinds as the next clip",
    .tags = {"swirl", "twirl", "spin", "vortex"},
    .factory = makeFilter<QVRotationWarpFilter>,
};

MTIParameters QVRotationWarpFilter::parameters() const {
    return {{"progress", progress()}, {"wrapWeight", float(HalvesEasing().halfScaled(progress()))}};
}

MTIImage QVRotationWarpFilter::outputImage() {
    blurFilter_.setInputImage1(QVLiquidTransitionMTIFilter::outputImage());
    blurFilter_.setProgress(progress());
    return blurFilter_.outputImage();
}

}  // namespace qv
