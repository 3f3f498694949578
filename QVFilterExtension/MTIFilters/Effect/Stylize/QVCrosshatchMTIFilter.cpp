#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVCrosshatchMTIFilterClass;
const QVFilterClass QVCrosshatchMTIFilterClass{
    .name = "QVCrosshatchMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Pen hatching",
    .help = "A pen drawing: outlines and crossing layers of hatching",
    .tags = {"sketch", "drawing", "pencil", "ink", "cartoon", "comic"},
    .category = QVFilterCategory::stylize,
};

}  // namespace qv
