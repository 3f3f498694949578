#include "QVFilterExtension/MTIFilters/Transition/Dissolve/QVBWDissolveTransitionMTIFilter.h"

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVTurnBWMTIFilter.h"

namespace qv {

const QVFilterClass QVBWDissolveTransitionMTIFilterClass{
    .name = "QVBWDissolveTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Dissolve through grey",
    .help = "The other clip is printed over this one in black ink, then gains its colour",
    .tags = {"black and white", "crossfade", "fade", "monochrome"},
    .factory = makeFilter<QVBWDissolveTransitionMTIFilter>,
};

MTIImage QVBWDissolveTransitionMTIFilter::outputImage() {
    constexpr double kColorSpan = 1 - 0.7;
    const float p = progress();
    const bool comes = p < 0.7f;
    const float remaining = comes ? 1.0f : float((1 - double(p)) / kColorSpan);

    QVTurnBWMTIFilter grey;
    grey.setInputImage(inputImage2());
    grey.setStrength(remaining);
    grey.setContrast(kContrast);
    grey.setOutputPixelFormat(outputPixelFormat());

    MTIOpacityFilter opacity;
    opacity.setInputImage(comes ? grey.outputImage() : inputImage1());
    opacity.setOpacity(comes ? float(p / 0.7) : remaining);
    opacity.setOutputPixelFormat(outputPixelFormat());

    MTIBlendFilter blend(MTIBlendMode::darken);
    blend.setInputBackgroundImage(comes ? inputImage1() : opacity.outputImage());
    blend.setInputImage(comes ? opacity.outputImage() : grey.outputImage());
    blend.setOutputPixelFormat(outputPixelFormat());
    return blend.outputImage();
}

}  // namespace qv
