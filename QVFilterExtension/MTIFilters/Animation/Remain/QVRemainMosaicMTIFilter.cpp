#include "QVFilterExtension/MTIFilters/Animation/Remain/QVRemainMosaicMTIFilter.h"

namespace qv {

const QVFilterClass QVRemainMosaicMTIFilterClass{
    .name = "QVRemainMosaicMTIFilter",
    .superclass = &QVBlurClassFilterClass,
    .help = "The picture comes out of a mosaic, or breaks up into it",
    .factory = makeFilter<QVRemainMosaicMTIFilter>,
};

MTIParameters QVRemainMosaicMTIFilter::parameters() const {
    return {{"filterStrength", float(mixStrength())}, {"maxDivideCount", 24.0f}};
}

}  // namespace qv
