#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIRGBDispersionFilter.h"

namespace qv {

const QVFilterClass QVAIRGBDispersionFilterClass{
    .name = "QVAIRGBDispersionFilter",
    .superclass = &QVAIRGBMTIFilterClass,
    .title = "Subject through a prism",
    .help = "The subject on white, its colours parted in three directions",
    .tags = {"rgb", "dispersion", "chromatic", "spectrum", "print", "cutout", "mask"},
    .factory = makeFilter<QVAIRGBDispersionFilter>,
};

MTIParameters QVAIRGBDispersionFilter::parameters() const {
    return {{"seperateDistance", effectValue()}};
}

}  // namespace qv
