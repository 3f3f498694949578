#include "QVFilterExtension/MTIFilters/Transition/Dissolve/QVBrightColorDissolveTransitionMTIFilter.h"

#include "Platform/ImageGraph/MTIFilters.h"

namespace qv {

const QVFilterClass QVBrightColorDissolveTransitionMTIFilterClass{
    .name = "QVBrightColorDissolveTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Additive dissolve",
    .help = "Adds the clips' light: brightest in the middle",
    .tags = {"crossfade", "add", "glow", "light"},
    .factory = makeFilter<QVBrightColorDissolveTransitionMTIFilter>,
};

MTIImage QVBrightColorDissolveTransitionMTIFilter::outputImage() {
    const float p = progress();
    const bool comes = p < 0.5f;
    MTIOpacityFilter opacity;
    opacity.setInputImage(comes ? inputImage2() : inputImage1());
    opacity.setOpacity(comes ? 2 * p : float(2 * (1 - double(p))));
    opacity.setOutputPixelFormat(outputPixelFormat());

    MTIBlendFilter blend(MTIBlendMode::add);
    blend.setInputBackgroundImage(comes ? inputImage1() : opacity.outputImage());
    blend.setInputImage(comes ? opacity.outputImage() : inputImage2());
    blend.setOutputPixelFormat(outputPixelFormat());
    return blend.outputImage();
}

}  // namespace qv
