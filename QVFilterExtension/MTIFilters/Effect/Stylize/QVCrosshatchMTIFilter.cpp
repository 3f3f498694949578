#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVCrosshatchMTIFilterClass;
const QVFilterClass QVCrosshatchMTIFilterClass{
    .name = "QVCrosshatchMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A pen drawing: outlines and crossing layers of hatching",
    .category = QVFilterCategory::stylize,
};

}  // namespace qv
