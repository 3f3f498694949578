#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingGhostFilter.h"

namespace qv {

const QVFilterClass QVAIMattingGhostFilterClass{
    .name = "QVAIMattingGhostFilter",
    .superclass = &QVAIMattingCopyFilterClass,
    .title = "Subject ghost",
    .help = "The ghost of the subject leaves it",
    .tags = {"spirit", "soul", "double exposure", "spooky", "apparition", "cutout", "mask"},
    .factory = makeFilter<QVAIMattingGhostFilter>,
};

MTIImage QVAIMattingGhostFilter::outputImage() {
    ghostFilter_.setITime(iTime());
    ghostFilter_.setEffectValue(effectValue());
    return overFrame(ghostFilter_);
}

}  // namespace qv
