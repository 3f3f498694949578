#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVGhostPEMTIFilterClass;
const QVFilterClass QVGhostPEMTIFilterClass{
    .name = "QVGhostPEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .title = "Ghost beat",
    .help = "On the beat, fading copies leave the picture and fly towards the viewer",
    .tags = {"echo", "copies", "zoom", "trail", "music"},
};

}  // namespace qv
