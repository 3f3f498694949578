#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAnaglyphPEMTIFilterClass;
const QVFilterClass QVAnaglyphPEMTIFilterClass{
    .name = "QVAnaglyphPEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .help = "On the beat, red and cyan part as in a stereo picture without glasses",
};

}  // namespace qv
