#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAICurrentFilter.h"

namespace qv {

const QVFilterClass QVAICurrentFilterClass{
    .name = "QVAICurrentFilter",
    .superclass = &QVAIContourNoiseFilterClass,
    .title = "Electric current",
    .help = "Electric arcs leap along the subject's outline",
    .tags = {"lightning", "electricity", "energy", "spark", "outline"},
    .factory = makeFilter<QVAICurrentFilter>,
};

}  // namespace qv
