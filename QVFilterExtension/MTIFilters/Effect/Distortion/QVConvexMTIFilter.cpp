#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVConvexMTIFilterClass;
const QVFilterClass QVConvexMTIFilterClass{
    .name = "QVConvexMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "The whole picture on a convex sheet of glass",
    .category = QVFilterCategory::distortion,
};

}  // namespace qv
