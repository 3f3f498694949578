#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVFishEyeRollFilter.h"

#include "QVFilterExtension/MTIFilters/Transition/Liquid/LiquidEasing.h"

namespace qv {

namespace {
constexpr HalvesEasing kEasing;
}  // namespace

const QVFilterClass QVFishEyeRollFilterClass{
    .name = "QVFishEyeRollFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Fisheye roll",
    .help = "Mirrored copies roll by behind a fisheye lens up to the next clip",
    .tags = {"mirror", "roll", "whip pan", "warp"},
    .factory = makeFilter<QVFishEyeRollFilter>,
};

MTIParameters QVFishEyeRollFilter::parameters() const {
    return {{"progress", float(kEasing.halfScaled(progress()))}};
}

MTIImage QVFishEyeRollFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const double eased = kEasing.half(progress());
    mirrorFilter_.setInputImage1(clipThatShows());
    mirrorFilter_.setMirrorNumber(float(1 + 2 * kEasing.peak(progress())));
    mirrorFilter_.setMoveDistance(float(progress() < 0.5f ? eased : eased + 1));
    blurFilter_.setInputImage1(render({mirrorFilter_.outputImage()}));
    blurFilter_.setProgress(float(kEasing.halfScaled(progress())));
    return blurFilter_.outputImage();
}

}  // namespace qv
