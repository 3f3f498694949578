#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingSplitFilter.h"

namespace qv {

const QVFilterClass QVAIMattingSplitFilterClass{
    .name = "QVAIMattingSplitFilter",
    .superclass = &QVAIMattingCopyFilterClass,
    .title = "Subject before copies",
    .help = "The subject in front of the frame in small copies",
    .tags = {"split screen", "grid", "clone", "background", "cutout", "mask"},
    .factory = makeFilter<QVAIMattingSplitFilter>,
    .defaultEffectValue = 0.05f,
};

MTIImage QVAIMattingSplitFilter::outputImage() {
    splitFilter_.setEffectValue(effectValue());
    return behindSubject(splitFilter_);
}

}  // namespace qv
