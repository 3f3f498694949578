#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTrembleEffectMTIFilterClass;
const QVFilterClass QVTrembleEffectMTIFilterClass{
    .name = "QVTrembleEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Camera shake",
    .help = "A camera in a nervous hand: shakes, jerks, smears",
    .tags = {"handheld", "earthquake", "jitter", "nervous"},
    .category = QVFilterCategory::motion,
    .isVideoOnly = true,
};

}  // namespace qv
