#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBaseRemainMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRemainWhiteMTIFilterClass;
const QVFilterClass QVRemainWhiteMTIFilterClass{
    .name = "QVRemainWhiteMTIFilter",
    .superclass = &QVBaseRemainMTIFilterClass,
    .title = "White fade",
    .help = "The picture comes out of white, or burns out into it",
    .tags = {"fade in", "fade out", "overexposed", "flash"},
};

}  // namespace qv
