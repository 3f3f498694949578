#include "QVFilterExtension/MTIFilters/Effect/Blur/QVGlassBlurMTIFilter.h"

namespace qv {

const QVFilterClass QVGlassBlurMTIFilterClass{
    .name = "QVGlassBlurMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "The picture behind frosted glass",
    .factory = makeFilter<QVGlassBlurMTIFilter>,
    .category = QVFilterCategory::blur,
};

MTIParameters QVGlassBlurMTIFilter::parameters() const {
    return {{"filterMixDistance", 65.0f * effectValue()}};
}

}  // namespace qv
