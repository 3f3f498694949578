#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVEdgeMTIFilterClass;
const QVFilterClass QVEdgeMTIFilterClass{
    .name = "QVEdgeMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Edges light up like neon tubes in the dark",
    .category = QVFilterCategory::stylize,
};

}  // namespace qv
