#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFireworkMTIFilterClass;
const QVFilterClass QVFireworkMTIFilterClass{
    .name = "QVFireworkMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Fireworks over a darkened picture, of a kind for each level",
    .category = QVFilterCategory::particle,
    .levelCount = 5,
    .isPhotoTimeConst = false,
};

}  // namespace qv
