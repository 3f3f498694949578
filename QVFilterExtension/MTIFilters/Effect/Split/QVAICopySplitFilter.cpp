#include "QVFilterExtension/MTIFilters/Effect/Split/QVAICopySplitFilter.h"

namespace qv {

const QVFilterClass QVAICopySplitFilterClass{
    .name = "QVAICopySplitFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Small copies of the frame around one in its middle",
    .factory = makeFilter<QVAICopySplitFilter>,
    .category = QVFilterCategory::split,
};

MTIParameters QVAICopySplitFilter::parameters() const {
    return {{"splitNumber", float(2 + 10 * double(effectValue()))}};
}

}  // namespace qv
