#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSlowZoomOutEffectMTIFilterClass;
const QVFilterClass QVSlowZoomOutEffectMTIFilterClass{
    .name = "QVSlowZoomOutEffectMTIFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .help = "A slow pull back to the whole frame over the clip",
};

}  // namespace qv
