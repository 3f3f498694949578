#include "QVFilterExtension/MTIFilters/Effect/Split/QVAICopySplitFilter.h"

namespace qv {

const QVFilterClass QVAICopySplitFilterClass{
    .name = "QVAICopySplitFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Copies around",
    .help = "Small copies of the frame around a large one in its middle",
    .tags = {"split screen", "grid", "clone", "multiply", "picture in picture"},
    .factory = makeFilter<QVAICopySplitFilter>,
    .category = QVFilterCategory::split,
};

MTIParameters QVAICopySplitFilter::parameters() const {
    return {{"splitNumber", float(2 + 10 * double(effectValue()))}};
}

}  // namespace qv
