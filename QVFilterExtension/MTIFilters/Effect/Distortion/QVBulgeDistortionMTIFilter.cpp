#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBulgeDistortionMTIFilterClass;
const QVFilterClass QVBulgeDistortionMTIFilterClass{
    .name = "QVBulgeDistortionMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Swells the middle of the picture",
    .category = QVFilterCategory::distortion,
};

}  // namespace qv
