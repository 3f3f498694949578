#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAISnowBallFilter.h"

#include <algorithm>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

/// Blur of what lies behind the ball, shorter sides, and how much nearer it is.
constexpr double kBlur = 0.025, kNearer = 1 / 0.95;

}  // namespace

const QVFilterClass QVAISnowBallFilterClass{
    .name = "QVAISnowBallFilter",
    .superclass = &QVAICelebrateFilterClass,
    .title = "Snow globe",
    .help = "The subject stands in a glass ball of snow",
    .tags = {"snow globe", "glass ball", "christmas", "winter", "crystal ball"},
    .factory = makeFilter<QVAISnowBallFilter>,
    .ignored = {"extraTransform"},
};

MTIImage QVAISnowBallFilter::outputImage() {
    if (!inputImage() || !maskImage()) return {};
    const CGSize size = inputImage().size();
    MTIGaussianBlurFilter blur;
    blur.setInputImage(inputImage());
    blur.setRadius(float(kBlur * std::min(size.width, size.height)));
    blur.setOutputPixelFormat(outputPixelFormat());
    const MTIImage ball = assets().mtiImageNamed("celebrate_glassBall.png");
    const MTIImage room =
        blur.outputImage().imageByApplyingTransform(CGAffineTransformMakeScale(kNearer, kNearer));
    return applyKernel({inputImage(), maskImage(), room, ball}, parameters());
}

}  // namespace qv
