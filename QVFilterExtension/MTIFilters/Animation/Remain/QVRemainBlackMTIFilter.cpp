#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBaseRemainMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRemainBlackMTIFilterClass;
const QVFilterClass QVRemainBlackMTIFilterClass{
    .name = "QVRemainBlackMTIFilter",
    .superclass = &QVBaseRemainMTIFilterClass,
    .help = "The picture comes out of black, or fades into it",
};

}  // namespace qv
