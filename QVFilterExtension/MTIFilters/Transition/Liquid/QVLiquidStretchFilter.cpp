#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidStretchFilter.h"

#include "QVFilterExtension/MTIFilters/Transition/Liquid/LiquidEasing.h"
#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidStretchFlipFilter.h"

namespace qv {

namespace {
constexpr HalvesEasing kEasing{{0.8, 0, 1, 1}, {0, 0, 0.2, 1}};
}  // namespace

const QVFilterClass QVLiquidStretchFilterClass{
    .name = "QVLiquidStretchFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Liquid stretch",
    .help = "The picture flows off to one side and the next clip flows in",
    .tags = {"smear", "whip pan", "chromatic", "flow"},
    .factory = makeFilter<QVLiquidStretchFilter>,
};

MTIParameters QVLiquidStretchFilter::parameters() const {
    return {{"progress", progress()}, {"RGBSeperate", float(kEasing.peak(progress()))}};
}

MTIImage QVLiquidStretchFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    MTIImage source = clipThatShows();
    // Mirrored once more by its way through the copies, the incoming clip arrives the right way round.
    if (progress() > 0.5f) {
        QVLiquidStretchFlipFilter flip;
        flip.setInputImage1(source);
        source = flip.outputImage();
    }
    mirrorFilter_.setInputImage1(source);
    mirrorFilter_.setMirrorNumber(1);
    mirrorFilter_.setMoveDistance(float(-kEasing.halfScaled(progress())));
    mirrorFilter_.setProgress(progress());
    return render({mirrorFilter_.outputImage()});
}

}  // namespace qv
