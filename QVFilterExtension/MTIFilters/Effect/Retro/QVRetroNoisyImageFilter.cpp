#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroNoisyImageFilter.h"

#include <algorithm>

#include "QVFilterExtension/Private/RetroScatter.h"

namespace qv {

namespace {

const RetroScatter kDust{.prefix = "whitePoint-a",
                         .count = 6,
                         .slotSeconds = 0.25,
                         .most = 5,
                         .fewest = 1,
                         .chance = 0.6,
                         .smallest = 0.12,
                         .largest = 0.34,
                         .alpha = 0.8,
                         .seed = 601};
const RetroScatter kSpots{.prefix = "retroPointA",
                          .count = 6,
                          .slotSeconds = 0.25,
                          .most = 4,
                          .chance = 0.5,
                          .smallest = 0.05,
                          .largest = 0.14,
                          .alpha = 0.6,
                          .seed = 701};
const RetroScatter kCreases{.prefix = "retroScratches-",
                            .count = 5,
                            .slotSeconds = 2.5,
                            .most = 2,
                            .chance = 0.8,
                            .smallest = 0.08,
                            .largest = 0.14,
                            .alpha = 0.5,
                            .upright = 16,
                            .seed = 801};

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

const QVFilterClass QVRetroNoisyImageFilterClass{
    .name = "QVRetroNoisyImageFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Old print",
    .help = "A yellowed colour print with grain, dust and a deckle-edged white border",
    .tags = {"photo", "print", "faded", "noise", "frame", "1970s", "nostalgia"},
    .factory = makeFilter<QVRetroNoisyImageFilter>,
    .category = QVFilterCategory::retro,
};

MTIImage QVRetroNoisyImageFilter::frameImage() const {
    return assets().fittedImage("retroFrame.png", inputImage().size(), [](const UIImage& asset, CGSize size) {
        const UIImage scaled = scale(asset, std::min(size.width, size.height) / 780);
        const double cap = scaled.size().width / 3;
        return scaleToSize(
            scaled.resizableImageWithCapInsets({cap, cap, cap, cap}, UIImage::ResizingMode::tile), size);
    });
}

MTIImage QVRetroNoisyImageFilter::outputImage() {
    if (!inputImage()) return {};
    MTIImage print = applyKernel({inputImage()}, parameters());
    if (const MTIImage frame = frameImage()) {
        blendFilter_.setInputBackgroundImage(print);
        blendFilter_.setInputImage(frame);
        print = blendFilter_.outputImage();
    }
    std::vector<SpiritParam> wear;
    for (const RetroScatter* set : {&kCreases, &kSpots, &kDust})
        set->addTo(wear, assets(), iTime(), effectValue(), isPhoto(), inputImage().size());
    spiritFilter_.setInputImage(print);
    spiritFilter_.setParams(std::move(wear));
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return spiritFilter_.outputImage();
}

}  // namespace qv
