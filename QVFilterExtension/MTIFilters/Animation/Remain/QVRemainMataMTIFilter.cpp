#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBaseRemainMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRemainMataMTIFilterClass;
const QVFilterClass QVRemainMataMTIFilterClass{
    .name = "QVRemainMataMTIFilter",
    .superclass = &QVBaseRemainMTIFilterClass,
    .title = "Matte fade",
    .help = "A dark matte opens from the lights of the picture to its shadows, or closes over it",
    .tags = {"luma", "mask", "fade in", "fade out", "reveal"},
};

}  // namespace qv
