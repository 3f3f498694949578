#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBaseRemainMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRemainBlackWhiteMTIFilterClass;
const QVFilterClass QVRemainBlackWhiteMTIFilterClass{
    .name = "QVRemainBlackWhiteMTIFilter",
    .superclass = &QVBaseRemainMTIFilterClass,
    .help = "Colour returns to a black and white picture, or leaves it",
};

}  // namespace qv
