#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroBWMTIFilter.h"

#include <algorithm>
#include <cmath>

#include "QVFilterExtension/Private/RetroScatter.h"

namespace qv {

namespace {

const RetroScatter kSpecks{.prefix = "whitePoint-",
                           .count = 6,
                           .slotSeconds = 1.0 / 18,
                           .most = 9,
                           .fewest = 2,
                           .chance = 0.6,
                           .smallest = 0.03,
                           .largest = 0.14,
                           .alpha = 0.9,
                           .seed = 1};
const RetroScatter kScratches{.prefix = "retroScratches-",
                              .count = 5,
                              .slotSeconds = 0.9,
                              .most = 3,
                              .fewest = 1,
                              .chance = 0.7,
                              .smallest = 0.05,
                              .largest = 0.09,
                              .alpha = 0.6,
                              .upright = 16,
                              .seed = 101};

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

const QVFilterClass QVRetroBWMTIFilterClass{
    .name = "QVRetroBWMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Nickelodeon",
    .help = "Silver greys in soft focus, white dust, scratches, and light from the end of the reel",
    .tags = {"black and white", "old film", "1920s", "silent movie", "scratches", "vintage"},
    .factory = makeFilter<QVRetroBWMTIFilter>,
    .category = QVFilterCategory::retro,
};

MTIImage QVRetroBWMTIFilter::lit(const MTIImage& film) {
    const double second = std::floor(iTime());
    if (!isPhoto() && retroDraw(second, 7) >= 0.34) return film;
    flashFilter_.setInputImage(film);
    flashFilter_.setEffectValue(effectValue());
    flashFilter_.setITime(iTime());
    flashFilter_.setIsPhoto(isPhoto());
    flashFilter_.settle();
    lightenBlendFilter_.setInputBackgroundImage(film);
    lightenBlendFilter_.setInputImage(flashFilter_.outputImage());
    const double light = retroPulse(iTime() - second, 0.15);
    lightenBlendFilter_.setIntensity(float(isPhoto() ? 0.5 : 0.7 * light * light));
    return lightenBlendFilter_.outputImage();
}

MTIImage QVRetroBWMTIFilter::outputImage() {
    if (!inputImage()) return {};
    const CGSize size = inputImage().size();
    blurFilter_.setInputImage(inputImage());
    blurFilter_.setRadius(float(std::min(size.width, size.height) / 45));

    std::vector<SpiritParam> wear;
    kScratches.addTo(wear, assets(), iTime(), effectValue(), isPhoto(), size);
    kSpecks.addTo(wear, assets(), iTime(), effectValue(), isPhoto(), size);
    // Sprites last: what lies below them is one pass.
    spiritFilter_.setInputImage(lit(applyKernel({inputImage(), blurFilter_.outputImage()}, parameters())));
    spiritFilter_.setParams(std::move(wear));
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return spiritFilter_.outputImage();
}

}  // namespace qv
