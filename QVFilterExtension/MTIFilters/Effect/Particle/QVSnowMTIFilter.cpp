#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSnowMTIFilterClass;
const QVFilterClass QVSnowMTIFilterClass{
    .name = "QVSnowMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Snow in layers from near to far, drifting in the wind",
    .category = QVFilterCategory::particle,
};

}  // namespace qv
