#include "QVFilterExtension/MTIFilters/Effect/Split/QVSplitNineFilter.h"

namespace qv {

const QVFilterClass QVSplitNineFilterClass{
    .name = "QVSplitNineFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Split screen in nine",
    .help = "Three by three small frames",
    .tags = {"multi screen", "grid", "repeat"},
    .factory = makeFilter<QVSplitNineFilter>,
    .category = QVFilterCategory::split,
    .fragmentFunction = "QVSplitFilter",
    .ignored = {"effectValue"},
};

MTIParameters QVSplitNineFilter::parameters() const {
    return {{"splitNumber", 3.0f}, {"splitDirection", 2}};
}

}  // namespace qv
