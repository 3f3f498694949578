#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFlashLightMTIFilterClass;
const QVFilterClass QVFlashLightMTIFilterClass{
    .name = "QVFlashLightMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Torch at night",
    .help = "Night, and a torch that searches the picture",
    .tags = {"flashlight", "spotlight", "dark", "search"},
    .category = QVFilterCategory::light,
};

}  // namespace qv
