#include "QVFilterExtension/MTIFilters/Animation/Periodic/QVCreasePEMTIFilter.h"

#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

const QVFilterClass QVCreasePEMTIFilterClass{
    .name = "QVCreasePEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .title = "Crumple beat",
    .help = "The picture crumples like paper on the beat",
    .tags = {"paper", "wrinkle", "crease", "warp", "music"},
    .factory = makeFilter<QVCreasePEMTIFilter>,
};

namespace {

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

QVCreasePEMTIFilter::QVCreasePEMTIFilter(const QVFilterClass& filterClass)
    : QVPeriodicEffectMTIFilter(filterClass),
      noiseImage_(assets().mtiImageNamed("filter_snow_noise.png", MTIAlphaType::alphaIsOne)) {}

MTIImage QVCreasePEMTIFilter::outputImage() {
    if (!inputImage() || !isEffectWithTime(iTime())) return inputImage();
    return applyKernel({inputImage(), noiseImage_}, parameters());
}

}  // namespace qv
