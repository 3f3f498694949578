#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBlackWhiteMTIFilterClass;
const QVFilterClass QVBlackWhiteMTIFilterClass{
    .name = "QVBlackWhiteMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Hard black and white",
    .help = "Takes the colour away, then hardens the greys",
    .tags = {"monochrome", "noir", "grayscale", "greyscale", "contrast"},
    .category = QVFilterCategory::retro,
};

}  // namespace qv
