#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBulgeDistortionMTIFilterClass;
const QVFilterClass QVBulgeDistortionMTIFilterClass{
    .name = "QVBulgeDistortionMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Bulge",
    .help = "Swells the middle of the picture into a glossy ball",
    .tags = {"fisheye", "swell", "balloon", "warp"},
    .category = QVFilterCategory::distortion,
};

}  // namespace qv
