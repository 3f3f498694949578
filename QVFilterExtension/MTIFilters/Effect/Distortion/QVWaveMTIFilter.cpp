#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVWaveMTIFilterClass;
const QVFilterClass QVWaveMTIFilterClass{
    .name = "QVWaveMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Wave",
    .help = "Seen through moving water",
    .tags = {"water", "ripple", "underwater", "heat haze"},
    .category = QVFilterCategory::distortion,
};

}  // namespace qv
