#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroRECMTIFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "QVFilterExtension/Private/RetroScatter.h"
#include "QVFilterExtension/Private/SmoothStep.h"

namespace qv {

namespace {

const RetroScatter kStreaks{.prefix = "retroLine-",
                            .count = 4,
                            .slotSeconds = 0.08,
                            .most = 5,
                            .fewest = 1,
                            .chance = 0.3,
                            .smallest = 0.25,
                            .largest = 0.8,
                            .alpha = 0.6,
                            .isLevel = true,
                            .seed = 401};

/// Height of a line's asset by its width, and how much of its width the line fills.
constexpr double kLineAspect = 64.0 / 1024, kLineLength = 0.97;

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

const QVFilterClass QVRetroRECMTIFilterClass{
    .name = "QVRetroRECMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "On air",
    .help = "A studio monitor of the tube era with lines of red light around the picture",
    .tags = {"rec", "recording", "tally", "crt", "studio", "monitor", "scan lines"},
    .factory = makeFilter<QVRetroRECMTIFilter>,
    .category = QVFilterCategory::retro,
};

std::vector<SpiritParam> QVRetroRECMTIFilter::spiritParams() const {
    const CGSize size = inputImage().size();
    const double unit = 2 * std::min(size.width, size.height) / 1080 / size.width;  // in sprite space
    const double aspect = size.height / size.width;
    std::vector<SpiritParam> sprites;
    const auto add = [&](const char* asset, double half, double x, double y, double turn, double alpha) {
        // As long as `half` on each side, as thick in every frame.
        CGAffineTransform pose = CGAffineTransformMakeScale(half / kLineLength, 22 * unit / kLineAspect);
        pose = CGAffineTransformConcat(pose, CGAffineTransformMakeRotation(turn));
        pose.tx = x, pose.ty = y;
        sprites.push_back(SpiritParam::paramWithTrans(pose, float(alpha), assets().textureNamed(asset)));
    };
    kStreaks.addTo(sprites, assets(), iTime(), effectValue(), isPhoto(), size);

    const double run = iTime() / 3.7, down = run - std::floor(run);
    if (!isPhoto())
        add("retroBlueLine.png", 1.06, 0, aspect * (1.1 - 2.2 * down), 0,
            0.30 + 0.25 * double(effectValue()));

    const double beat = iTime() / 1.6, phase = beat - std::floor(beat);
    const double pulse =
        isPhoto() ? 1 : 0.35 + 0.65 * (smoothStep(phase / 0.18) - smoothStep((phase - 0.5) / 0.5));
    const double x = 1 - 60 * unit, y = aspect - 60 * unit;
    for (const double h : {-1.0, 1.0}) {
        add("retroRedLine.png", x, 0, h * y, 0, pulse);
        add("retroRedLine.png", y, h * x, 0, std::numbers::pi / 2, pulse);
    }
    return sprites;
}

MTIImage QVRetroRECMTIFilter::outputImage() {
    if (!inputImage()) return {};
    spiritFilter_.setInputImage(applyKernel({inputImage()}, parameters()));
    spiritFilter_.setParams(spiritParams());
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return spiritFilter_.outputImage();
}

}  // namespace qv
