#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTrembleEffectMTIFilterClass;
const QVFilterClass QVTrembleEffectMTIFilterClass{
    .name = "QVTrembleEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A camera in a nervous hand: shakes, jerks, smears",
    .category = QVFilterCategory::motion,
    .isVideoOnly = true,
};

}  // namespace qv
