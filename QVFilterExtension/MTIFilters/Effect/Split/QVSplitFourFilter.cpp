#include "QVFilterExtension/MTIFilters/Effect/Split/QVSplitFourFilter.h"

namespace qv {

const QVFilterClass QVSplitFourFilterClass{
    .name = "QVSplitFourFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Split screen in four",
    .help = "Two by two small frames",
    .tags = {"multi screen", "grid", "repeat"},
    .factory = makeFilter<QVSplitFourFilter>,
    .category = QVFilterCategory::split,
    .fragmentFunction = "QVSplitFilter",
    .ignored = {"effectValue"},
};

MTIParameters QVSplitFourFilter::parameters() const {
    return {{"splitNumber", 2.0f}, {"splitDirection", 2}};
}

}  // namespace qv
