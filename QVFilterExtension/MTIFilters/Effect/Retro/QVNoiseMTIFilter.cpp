#include "QVFilterExtension/MTIFilters/Effect/Retro/QVNoiseMTIFilter.h"

#include "QVFilterCore/QVClipTime.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

const QVFilterClass QVNoiseMTIFilterClass{
    .name = "QVNoiseMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Night camera noise",
    .help = "The coarse grain and colour blotches of a camera pushed to its limit",
    .tags = {"noise", "grain", "iso", "night", "lo-fi", "gritty", "digicam"},
    .factory = makeFilter<QVNoiseMTIFilter>,
    .category = QVFilterCategory::retro,
    .isPhotoTimeConst = false,
};

namespace {

constexpr double kDrawSeconds = 1.0 / 24;

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

QVNoiseMTIFilter::QVNoiseMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass),
      noiseImage_(assets().mtiImageNamed("filter_noise.png", MTIAlphaType::alphaIsOne)) {}

MTIParameters QVNoiseMTIFilter::parameters() const {
    return {{"effectValue", effectValue()}, {"draw", timeCycleAt(iTime(), kDrawSeconds).wrappedNumber()}};
}

MTIImage QVNoiseMTIFilter::outputImage() {
    return noiseImage_ ? applyKernel({inputImage(), noiseImage_}, parameters()) : MTIImage();
}

}  // namespace qv
