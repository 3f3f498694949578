#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIRGBCyanSeperateFilter.h"

namespace qv {

const QVFilterClass QVAIRGBCyanSeperateFilterClass{
    .name = "QVAIRGBCyanSeperateFilter",
    .superclass = &QVAIRGBMTIFilterClass,
    .title = "Red and cyan print",
    .help = "The subject on white in two prints out of register, the cyan one larger",
    .tags = {"rgb", "anaglyph", "3d", "risograph", "chromatic", "cutout", "mask"},
    .factory = makeFilter<QVAIRGBCyanSeperateFilter>,
    .properties =
        {
            qvProperty<&QVEffectMTIFilter::extractValues, &QVEffectMTIFilter::setExtractValues>({
                .name = "extractValues",
                .title = "Zoom",
                .help = "the first: how much larger the cyan print is; 0.5 without",
                .unit = QVUnit::fraction,
                .driver = QVPropertyDriver::host,
            }),
        },
};

MTIParameters QVAIRGBCyanSeperateFilter::parameters() const {
    const float zoom = extractValues().empty() ? 0.5f : float(extractValues().front());
    return {{"seperateDistance", effectValue()}, {"seperateZoomValue", zoom}};
}

}  // namespace qv
