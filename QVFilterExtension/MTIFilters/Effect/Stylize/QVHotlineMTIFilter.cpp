#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVHotlineMTIFilterClass;
const QVFilterClass QVHotlineMTIFilterClass{
    .name = "QVHotlineMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A thermal camera's false colours, with isotherms that wander",
    .category = QVFilterCategory::stylize,
};

}  // namespace qv
