#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSlowZoomOutEffectMTIFilterClass;
const QVFilterClass QVSlowZoomOutEffectMTIFilterClass{
    .name = "QVSlowZoomOutEffectMTIFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .title = "Slow zoom out",
    .help = "A slow pull back to the whole frame over the clip",
    .tags = {"ken burns", "pull back", "dolly", "photo", "camera move"},
};

}  // namespace qv
