#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVConvexMTIFilterClass;
const QVFilterClass QVConvexMTIFilterClass{
    .name = "QVConvexMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Convex glass",
    .help = "The whole picture on a convex sheet of glass",
    .tags = {"bulge", "lens", "warp", "fisheye"},
    .category = QVFilterCategory::distortion,
};

}  // namespace qv
