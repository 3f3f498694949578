#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVWaveMTIFilterClass;
const QVFilterClass QVWaveMTIFilterClass{
    .name = "QVWaveMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Seen through moving water",
    .category = QVFilterCategory::distortion,
};

}  // namespace qv
