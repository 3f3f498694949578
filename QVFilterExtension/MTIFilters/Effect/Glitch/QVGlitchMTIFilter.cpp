#include "QVFilterExtension/MTIFilters/Effect/Glitch/QVGlitchMTIFilter.h"

#include "QVFilterCore/QVClipTime.h"

namespace qv {

const QVFilterClass QVGlitchMTIFilterClass{
    .name = "QVGlitchMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Broken signal",
    .help = "Bands jump, columns smear, blocks show other places in false colours",
    .tags = {"glitch", "datamosh", "digital", "error", "cyberpunk", "distortion"},
    .factory = makeFilter<QVGlitchMTIFilter>,
    .category = QVFilterCategory::glitch,
    .isPhotoTimeConst = false,
};

MTIParameters QVGlitchMTIFilter::parameters() const {
    return {{"effectValue", effectValue()},
            {"draw", timeCycleAt(iTime(), kDrawSeconds).wrappedNumber()},
            {"phrase", timeCycleAt(iTime(), kDrawSeconds * kDrawsOfPhrase).wrappedNumber()}};
}

}  // namespace qv
