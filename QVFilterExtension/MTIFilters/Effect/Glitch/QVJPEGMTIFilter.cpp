#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVJPEGMTIFilterClass;
const QVFilterClass QVJPEGMTIFilterClass{
    .name = "QVJPEGMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Saved too often: coarse blocks of light and colour, damaged rows",
    .category = QVFilterCategory::glitch,
    .isPhotoTimeConst = false,
};

}  // namespace qv
