#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBaseRemainMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRemainBlackWhiteMTIFilterClass;
const QVFilterClass QVRemainBlackWhiteMTIFilterClass{
    .name = "QVRemainBlackWhiteMTIFilter",
    .superclass = &QVBaseRemainMTIFilterClass,
    .title = "Grey fade",
    .help = "Colour returns to a black and white picture, or leaves it",
    .tags = {"black and white", "monochrome", "fade in", "fade out", "colour"},
};

}  // namespace qv
