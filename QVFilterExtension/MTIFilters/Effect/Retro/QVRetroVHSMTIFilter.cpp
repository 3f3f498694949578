#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroVHSMTIFilter.h"

#include "QVFilterExtension/Private/RetroScatter.h"

namespace qv {

namespace {

const RetroScatter kDropouts{.prefix = "retroLine-",
                             .count = 4,
                             .slotSeconds = 0.05,
                             .most = 12,
                             .fewest = 2,
                             .chance = 0.45,
                             .smallest = 0.15,
                             .largest = 0.9,
                             .alpha = 0.95,
                             .isLevel = true,
                             .seed = 501};

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

const QVFilterClass QVRetroVHSMTIFilterClass{
    .name = "QVRetroVHSMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Tape search",
    .help = "A video tape wound with its picture on: climbing bars of noise, late colours, dropouts",
    .tags = {"vhs", "tape", "rewind", "glitch", "tracking", "1980s", "analog"},
    .factory = makeFilter<QVRetroVHSMTIFilter>,
    .category = QVFilterCategory::retro,
};

MTIImage QVRetroVHSMTIFilter::outputImage() {
    if (!inputImage()) return {};
    std::vector<SpiritParam> dropouts;
    kDropouts.addTo(dropouts, assets(), iTime(), effectValue(), isPhoto(), inputImage().size());
    spiritFilter_.setInputImage(applyKernel({inputImage()}, parameters()));
    spiritFilter_.setParams(std::move(dropouts));
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return spiritFilter_.outputImage();
}

}  // namespace qv
