#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVZoomPEMTIFilterClass;
const QVFilterClass QVZoomPEMTIFilterClass{
    .name = "QVZoomPEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .help = "Punches in on the beat and eases back",
};

}  // namespace qv
