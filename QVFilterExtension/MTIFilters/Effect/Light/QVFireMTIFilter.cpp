#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFireMTIFilterClass;
const QVFilterClass QVFireMTIFilterClass{
    .name = "QVFireMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Flames lick up from the foot of the picture, embers fly, the scene glows",
    .category = QVFilterCategory::light,
};

}  // namespace qv
