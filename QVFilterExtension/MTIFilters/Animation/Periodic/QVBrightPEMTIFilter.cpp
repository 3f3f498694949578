#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBrightPEMTIFilterClass;
const QVFilterClass QVBrightPEMTIFilterClass{
    .name = "QVBrightPEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .title = "Flash beat",
    .help = "A flash of light on the beat that burns out highlights first",
    .tags = {"strobe", "light", "overexposed", "music"},
};

}  // namespace qv
