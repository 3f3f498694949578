#include "QVFilterExtension/MTIFilters/Animation/Zoom/QVJumpZoomInEffectMTIFilter.h"

namespace qv {

const QVFilterClass QVJumpZoomInEffectMTIFilterClass{
    .name = "QVJumpZoomInEffectMTIFilter",
    .superclass = &QVSlowZoomInEffectMTIFilterClass,
    .help = "A jump cut to where the slow zoom in ends",
    .factory = makeFilter<QVJumpZoomInEffectMTIFilter>,
    .fragmentFunction = "QVSlowZoomInEffectMTIFilter",
};

}  // namespace qv
