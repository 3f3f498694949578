#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVDapPEMTIFilterClass;
const QVFilterClass QVDapPEMTIFilterClass{
    .name = "QVDapPEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .title = "Hop beat",
    .help = "A tap on the beat: the picture hops, lands softly and hops once more",
    .tags = {"bounce", "jump", "tap", "music"},
};

}  // namespace qv
