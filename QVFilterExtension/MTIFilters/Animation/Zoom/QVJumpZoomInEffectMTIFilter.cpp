#include "QVFilterExtension/MTIFilters/Animation/Zoom/QVJumpZoomInEffectMTIFilter.h"

namespace qv {

const QVFilterClass QVJumpZoomInEffectMTIFilterClass{
    .name = "QVJumpZoomInEffectMTIFilter",
    .superclass = &QVSlowZoomInEffectMTIFilterClass,
    .title = "Jump zoom in",
    .help = "A jump cut to where the slow zoom in ends",
    .tags = {"jump cut", "punch in", "crop"},
    .factory = makeFilter<QVJumpZoomInEffectMTIFilter>,
    .fragmentFunction = "QVSlowZoomInEffectMTIFilter",
};

}  // namespace qv
