#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIFreezeFilter.h"

#include "QVFilterCore/QVLookupMTIFilter.h"
#include "QVFilterExtension/Private/QVAssetCache.h"
#include "QVFilterExtension/Private/QVSubjectCutOut.h"

namespace qv {

namespace {

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

const QVFilterClass QVAIFreezeFilterClass{
    .name = "QVAIFreezeFilter",
    .superclass = &QVAICelebrateFilterClass,
    .title = "Frozen world",
    .help = "The world freezes over and the subject stays free",
    .tags = {"ice", "frost", "cold", "winter", "snow", "freeze"},
    .factory = makeFilter<QVAIFreezeFilter>,
    .ignored = {"extraTransform"},
};

MTIImage QVAIFreezeFilter::outputImage() {
    const MTIImage subject = softSubjectCutOut(*this);
    if (!subject) return {};
    QVLookupMTIFilter lookup;
    lookup.setInputImage(inputImage());
    lookup.setInputColorLookupTable(assets().mtiImageNamed("celebrate_freeze_lookup.png"));
    lookup.setIntensity(0.35f + 0.65f * effectValue());
    lookup.setOutputPixelFormat(outputPixelFormat());
    const CGSize size = inputImage().size();
    const MTIImage ice = assets().mtiImageNamed(size.width < size.height ? "celebrate_aiIceMaskV.png"
                                                                         : "celebrate_aiIceMask.png");
    return blended(subject, applyKernel({lookup.outputImage(), ice}, parameters()));
}

}  // namespace qv
