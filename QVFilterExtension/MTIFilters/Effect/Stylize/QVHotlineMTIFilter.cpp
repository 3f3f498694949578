#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVHotlineMTIFilterClass;
const QVFilterClass QVHotlineMTIFilterClass{
    .name = "QVHotlineMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Thermal camera",
    .help = "A thermal camera's false colours, with isotherms that wander",
    .tags = {"heat", "infrared", "predator vision", "false colours"},
    .category = QVFilterCategory::stylize,
};

}  // namespace qv
