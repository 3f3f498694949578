#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIHUEChangeFilter.h"

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIHUEHaloFilter.h"
#include "QVFilterExtension/Private/QVSubjectCutOut.h"

namespace qv {

const QVFilterClass QVAIHUEChangeFilterClass{
    .name = "QVAIHUEChangeFilter",
    .superclass = &QVAICelebrateFilterClass,
    .title = "Colour world",
    .help = "The world changes its hues, the subject glows and keeps its colours",
    .tags = {"hue", "rainbow", "psychedelic", "recolour", "glow", "iridescent"},
    .factory = makeFilter<QVAIHUEChangeFilter>,
    .inputs = {{kInputImage,
                qvInput<&QVAIEffectMTIFilter::setMaskImage>(
                    {.name = "maskImage", .role = QVInputRole::mask, .help = "white where the subject is"}),
                qvInput<&QVAIEffectMTIFilter::setMaskPixelBuffer>(
                    {.name = "maskPixelBuffer",
                     .role = QVInputRole::mask,
                     .help = "the same mask in memory, a byte a pixel",
                     .isRequired = false})}},
    .defaultEffectValue = 0.65f,
    .ignored = {"iTime"},
};

MTIImage QVAIHUEChangeFilter::outputImage() {
    const MTIImage subject = softSubjectCutOut(*this);
    if (!subject) return {};
    QVAIHUEHaloFilter halo;
    halo.setInputImage(subject);
    halo.setMaskImage(maskImage());
    halo.setMaskPixelBuffer(maskPixelBuffer());
    halo.setExtraTransform(extraTransform());
    halo.setOutputPixelFormat(outputPixelFormat());
    return blended(subject, blended(halo.outputImage(), applyKernel({inputImage()}, parameters())));
}

}  // namespace qv
