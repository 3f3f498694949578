#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVEdgeMTIFilterClass;
const QVFilterClass QVEdgeMTIFilterClass{
    .name = "QVEdgeMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Neon edges",
    .help = "Edges light up like neon tubes in the dark",
    .tags = {"glow", "outline", "sketch", "contour", "night"},
    .category = QVFilterCategory::stylize,
};

}  // namespace qv
