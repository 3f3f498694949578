#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSnowMTIFilterClass;
const QVFilterClass QVSnowMTIFilterClass{
    .name = "QVSnowMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Snow",
    .help = "Snow in layers from near to far, drifting in the wind",
    .tags = {"winter", "weather", "christmas", "flakes"},
    .category = QVFilterCategory::particle,
};

}  // namespace qv
