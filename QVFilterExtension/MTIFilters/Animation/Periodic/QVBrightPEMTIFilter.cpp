#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBrightPEMTIFilterClass;
const QVFilterClass QVBrightPEMTIFilterClass{
    .name = "QVBrightPEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .help = "A flash of light on the beat that burns out highlights first",
};

}  // namespace qv
