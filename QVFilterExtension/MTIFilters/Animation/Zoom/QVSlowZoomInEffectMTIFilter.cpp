#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSlowZoomInEffectMTIFilterClass;
const QVFilterClass QVSlowZoomInEffectMTIFilterClass{
    .name = "QVSlowZoomInEffectMTIFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .help = "A slow push into the middle of the frame over the clip",
};

}  // namespace qv
