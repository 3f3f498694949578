#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAICelebrateFilter.h"

#include "Platform/ImageGraph/MTIFilters.h"

namespace qv {

const QVFilterClass QVAICelebrateFilterClass{
    .name = "QVAICelebrateFilter",
    .superclass = &QVAIEffectMTIFilterClass,
    .title = "Celebration",
    .help = "The world changes around the subject",
    .category = QVFilterCategory::subject,
    .inputs = {{kInputImage,
                qvInput<&QVAIEffectMTIFilter::setMaskImage>(
                    {.name = "maskImage", .role = QVInputRole::mask, .help = "white where the subject is"})}},
    .ignored = {"colors", "inputImageOriginalSize"},
};

MTIImage QVAICelebrateFilter::blended(const MTIImage& top, const MTIImage& below) const {
    MTIBlendFilter blendFilter(MTIBlendMode::normal);
    blendFilter.setInputImage(top);
    blendFilter.setInputBackgroundImage(below);
    blendFilter.setOutputPixelFormat(outputPixelFormat());
    return blendFilter.outputImage();
}

}  // namespace qv
