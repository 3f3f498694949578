#include "QVFilterExtension/MTIFilters/Animation/Remain/QVRemainMosaicMTIFilter.h"

namespace qv {

const QVFilterClass QVRemainMosaicMTIFilterClass{
    .name = "QVRemainMosaicMTIFilter",
    .superclass = &QVBlurClassFilterClass,
    .title = "Mosaic fade",
    .help = "The picture comes out of a mosaic, or breaks up into it",
    .tags = {"pixelate", "blocks", "fade in", "fade out"},
    .factory = makeFilter<QVRemainMosaicMTIFilter>,
};

MTIParameters QVRemainMosaicMTIFilter::parameters() const {
    return {{"filterStrength", float(mixStrength())}, {"maxDivideCount", 24.0f}};
}

}  // namespace qv
