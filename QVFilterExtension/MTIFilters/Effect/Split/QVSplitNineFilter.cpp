#include "QVFilterExtension/MTIFilters/Effect/Split/QVSplitNineFilter.h"

namespace qv {

const QVFilterClass QVSplitNineFilterClass{
    .name = "QVSplitNineFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Three by three small frames",
    .factory = makeFilter<QVSplitNineFilter>,
    .category = QVFilterCategory::split,
    .fragmentFunction = "QVSplitFilter",
    .levelCount = 0,
};

MTIParameters QVSplitNineFilter::parameters() const {
    return {{"splitNumber", 3.0f}, {"splitDirection", 2}};
}

}  // namespace qv
