#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBaseRemainMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRemainMataMTIFilterClass;
const QVFilterClass QVRemainMataMTIFilterClass{
    .name = "QVRemainMataMTIFilter",
    .superclass = &QVBaseRemainMTIFilterClass,
    .help = "A dark matte opens from the lights of the picture to its shadows, or closes over it",
};

}  // namespace qv
