#include "QVFilterExtension/MTIFilters/Effect/Blur/QVGlassBlurMTIFilter.h"

namespace qv {

const QVFilterClass QVGlassBlurMTIFilterClass{
    .name = "QVGlassBlurMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Frosted glass",
    .help = "The picture behind frosted glass",
    .tags = {"blur", "privacy", "bathroom window", "noise"},
    .factory = makeFilter<QVGlassBlurMTIFilter>,
    .category = QVFilterCategory::blur,
};

MTIParameters QVGlassBlurMTIFilter::parameters() const {
    return {{"filterMixDistance", 65.0f * effectValue()}};
}

}  // namespace qv
