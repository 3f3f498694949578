#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIFireFilter.h"

namespace qv {

const QVFilterClass QVAIFireFilterClass{
    .name = "QVAIFireFilter",
    .superclass = &QVAIContourNoiseFilterClass,
    .title = "Burning edge",
    .help = "Flames rise from the subject's outline",
    .tags = {"flame", "fire", "burn", "hot", "aura"},
    .factory = makeFilter<QVAIFireFilter>,
};

}  // namespace qv
