#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFireMTIFilterClass;
const QVFilterClass QVFireMTIFilterClass{
    .name = "QVFireMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Fire",
    .help = "Flames lick up from the foot of the picture, embers fly, the scene glows",
    .tags = {"flames", "embers", "burn", "hot", "glow"},
    .category = QVFilterCategory::light,
};

}  // namespace qv
