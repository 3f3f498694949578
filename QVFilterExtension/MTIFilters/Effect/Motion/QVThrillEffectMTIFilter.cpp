#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVThrillEffectMTIFilterClass;
const QVFilterClass QVThrillEffectMTIFilterClass{
    .name = "QVThrillEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A frightened heart: zoom punches, parted colours, red dark closing in",
    .category = QVFilterCategory::motion,
    .isVideoOnly = true,
};

}  // namespace qv
