#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSlowZoomInEffectMTIFilterClass;
const QVFilterClass QVSlowZoomInEffectMTIFilterClass{
    .name = "QVSlowZoomInEffectMTIFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .title = "Slow zoom in",
    .help = "A slow push into the middle of the frame over the clip, its edges out of focus",
    .tags = {"ken burns", "push in", "dolly", "photo", "camera move"},
};

}  // namespace qv
