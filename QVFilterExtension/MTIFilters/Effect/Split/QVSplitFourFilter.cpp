#include "QVFilterExtension/MTIFilters/Effect/Split/QVSplitFourFilter.h"

namespace qv {

const QVFilterClass QVSplitFourFilterClass{
    .name = "QVSplitFourFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Two by two small frames",
    .factory = makeFilter<QVSplitFourFilter>,
    .category = QVFilterCategory::split,
    .fragmentFunction = "QVSplitFilter",
    .levelCount = 0,
};

MTIParameters QVSplitFourFilter::parameters() const {
    return {{"splitNumber", 2.0f}, {"splitDirection", 2}};
}

}  // namespace qv
