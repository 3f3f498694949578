#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAnaglyphPEMTIFilterClass;
const QVFilterClass QVAnaglyphPEMTIFilterClass{
    .name = "QVAnaglyphPEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .title = "Stereo beat",
    .help = "On the beat, red and cyan part as in a stereo picture without glasses",
    .tags = {"anaglyph", "3d", "chromatic", "aberration", "red and cyan", "music"},
};

}  // namespace qv
