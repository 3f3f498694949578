#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBlackWhiteMTIFilterClass;
const QVFilterClass QVBlackWhiteMTIFilterClass{
    .name = "QVBlackWhiteMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Takes the colour away, then hardens the greys",
    .category = QVFilterCategory::retro,
};

}  // namespace qv
