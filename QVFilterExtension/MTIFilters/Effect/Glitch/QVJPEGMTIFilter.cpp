#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVJPEGMTIFilterClass;
const QVFilterClass QVJPEGMTIFilterClass{
    .name = "QVJPEGMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Overcompressed",
    .help = "Saved too often: coarse blocks of light and colour, damaged rows",
    .tags = {"jpeg", "artifacts", "glitch", "pixelate", "deep fried", "blocks"},
    .category = QVFilterCategory::glitch,
    .isPhotoTimeConst = false,
};

}  // namespace qv
