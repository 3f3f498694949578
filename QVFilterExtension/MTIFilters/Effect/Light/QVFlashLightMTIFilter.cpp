#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFlashLightMTIFilterClass;
const QVFilterClass QVFlashLightMTIFilterClass{
    .name = "QVFlashLightMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Night, and a torch that searches the picture",
    .category = QVFilterCategory::light,
};

}  // namespace qv
