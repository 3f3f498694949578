#include "QVFilterExtension/MTIFilters/Effect/Blur/QVGlassBlurMTIFilter.h"

namespace qv {

const QVFilterClass QVGlassBlurMTIFilterClass{
    .name = "QVGlassBlurMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Reeded glass",
    .help = "The picture behind ribbed, slightly frosted glass",
    .tags = {"blur", "frosted glass", "fluted", "privacy", "bathroom window"},
    .factory = makeFilter<QVGlassBlurMTIFilter>,
    .category = QVFilterCategory::blur,
};

MTIParameters QVGlassBlurMTIFilter::parameters() const {
    return {{"filterMixDistance", 65.0f * effectValue()}};
}

}  // namespace qv
