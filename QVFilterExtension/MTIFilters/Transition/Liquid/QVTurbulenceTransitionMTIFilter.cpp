#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVTurbulenceTransitionMTIFilter.h"

#include "Platform/Foundation/Random.h"
#include "QVFilterExtension/MTIFilters/Transition/Liquid/LiquidEasing.h"
#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVTurbulenceBlendMTIFilter.h"
#include "QVFilterExtension/Private/RandomSeed.h"

namespace qv {

namespace {

constexpr HalvesEasing kEasing{{0.5, 0, 0.83, 0.83}, {0.17, 0.17, 0.5, 1}};

/// The duration counts in units of its own time scale.
float randomWarp(const CMTimeRange& timeRange) {
    const double seed = double(timeRange.duration.value) + 89.0 + 160.0;
    return float(randomFromSeed(randomSeedFromDouble(seed))) / 9999999.0f;
}

}  // namespace

const QVFilterClass QVTurbulenceTransitionMTIFilterClass{
    .name = "QVTurbulenceTransitionMTIFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Turbulence",
    .help = "The picture is torn apart by turbulent currents and settles as the next clip",
    .tags = {"warp", "swirl", "smoke", "flow"},
    .factory = makeFilter<QVTurbulenceTransitionMTIFilter>,
};

MTIParameters QVTurbulenceTransitionMTIFilter::parameters() const {
    return {{"progress", float(kEasing.halfScaled(progress()))},
            {"iTime", double(progress()) * 10},
            {"randomMaxWarp", randomWarp(timeRange())}};
}

MTIImage QVTurbulenceTransitionMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    QVTurbulenceBlendMTIFilter blend;
    blend.setInputImage1(inputImage1());
    blend.setInputImage2(inputImage2());
    blend.setProgress(progress());
    return render({blend.outputImage()});
}

}  // namespace qv
