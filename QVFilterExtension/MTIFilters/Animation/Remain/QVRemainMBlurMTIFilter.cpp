#include "QVFilterExtension/MTIFilters/Animation/Remain/QVRemainMBlurMTIFilter.h"

namespace qv {

const QVFilterClass QVRemainMBlurMTIFilterClass{
    .name = "QVRemainMBlurMTIFilter",
    .superclass = &QVBlurClassFilterClass,
    .title = "Smear fade",
    .help = "The picture comes to rest out of a smear, or is swept away",
    .tags = {"motion blur", "fade in", "fade out", "whip"},
    .factory = makeFilter<QVRemainMBlurMTIFilter>,
};

MTIParameters QVRemainMBlurMTIFilter::parameters() const {
    return {{"filterMixDistance", float((1 - mixStrength()) * 65)}};
}

}  // namespace qv
