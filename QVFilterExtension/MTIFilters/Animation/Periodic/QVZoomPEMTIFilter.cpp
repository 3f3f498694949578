#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVZoomPEMTIFilterClass;
const QVFilterClass QVZoomPEMTIFilterClass{
    .name = "QVZoomPEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .title = "Zoom beat",
    .help = "Punches in on the beat and eases back",
    .tags = {"punch", "pulse", "bounce", "music"},
};

}  // namespace qv
