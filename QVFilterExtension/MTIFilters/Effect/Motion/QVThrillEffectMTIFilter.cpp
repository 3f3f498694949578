#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVThrillEffectMTIFilterClass;
const QVFilterClass QVThrillEffectMTIFilterClass{
    .name = "QVThrillEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Thrill",
    .help = "A frightened heart: zoom punches, parted colours, red dark closing in",
    .tags = {"horror", "heartbeat", "shake", "red", "chromatic", "vignette"},
    .category = QVFilterCategory::motion,
    .isVideoOnly = true,
};

}  // namespace qv
