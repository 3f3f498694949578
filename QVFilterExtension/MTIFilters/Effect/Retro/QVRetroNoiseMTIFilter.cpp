#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroNoiseMTIFilter.h"

#include <cmath>

#include "QVFilterExtension/Private/RetroScatter.h"

namespace qv {

namespace {

const RetroScatter kStains{.prefix = "retroVariegated-",
                           .count = 5,
                           .slotSeconds = 1.3,
                           .most = 4,
                           .fewest = 1,
                           .chance = 0.75,
                           .smallest = 0.5,
                           .largest = 1.1,
                           .alpha = 1,
                           .seed = 201};
const RetroScatter kDirt{.prefix = "retroPointA",
                         .count = 6,
                         .slotSeconds = 1.0 / 12,
                         .most = 6,
                         .fewest = 1,
                         .chance = 0.4,
                         .smallest = 0.05,
                         .largest = 0.16,
                         .alpha = 0.85,
                         .seed = 301};

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

const QVFilterClass QVRetroNoiseMTIFilterClass{
    .name = "QVRetroNoiseMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Cross-processed film",
    .help = "Steep colours out of the wrong bath, coarse grain, stains and two-coloured flashes",
    .tags = {"grain", "noise", "lomo", "cross process", "light leak", "analog", "dirt"},
    .factory = makeFilter<QVRetroNoiseMTIFilter>,
    .category = QVFilterCategory::retro,
};

QVRetroNoiseMTIFilter::QVRetroNoiseMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {
    sideFlashFilter_.setMixColor(true);
}

MTIImage QVRetroNoiseMTIFilter::outputImage() {
    if (!inputImage()) return {};
    const MTIImage film = applyKernel({inputImage()}, parameters());
    const double second = std::floor(iTime());
    flashFilter_.setInputImage(film);
    flashFilter_.setEffectValue(effectValue());
    flashFilter_.setITime(iTime());
    flashFilter_.setIsPhoto(isPhoto());
    flashFilter_.settle();
    screenBlendFilter_.setInputBackgroundImage(film);
    screenBlendFilter_.setInputImage(flashFilter_.outputImage());
    const bool isLit = !isPhoto() && retroDraw(second, 9) < 0.25;
    screenBlendFilter_.setIntensity(float(0.4 * retroPulse(iTime() - second, 0.15)));

    sideFlashFilter_.setInputImage(film);
    sideFlashFilter_.setEffectValue(0.5f * effectValue());
    sideFlashFilter_.setITime(iTime());
    sideFlashFilter_.settle();
    lightenBlendFilter_.setInputImage(sideFlashFilter_.outputImage());
    lightenBlendFilter_.setInputBackgroundImage(isLit ? screenBlendFilter_.outputImage() : film);
    lightenBlendFilter_.setIntensity(sideFlashFilter_.sideFlashColor() != 0 ? 0.9f : 0.35f);

    normalBlendFilter_.setInputBackgroundImage(inputImage());
    normalBlendFilter_.setInputImage(lightenBlendFilter_.outputImage());
    normalBlendFilter_.setIntensity(0.35f + 0.65f * effectValue());

    const CGSize size = inputImage().size();
    std::vector<SpiritParam> wear;
    kStains.addTo(wear, assets(), iTime(), effectValue(), isPhoto(), size);
    kDirt.addTo(wear, assets(), iTime(), effectValue(), isPhoto(), size);
    // Sprites last: what lies below them is one pass.
    spiritFilter_.setInputImage(normalBlendFilter_.outputImage());
    spiritFilter_.setParams(std::move(wear));
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return spiritFilter_.outputImage();
}

}  // namespace qv
