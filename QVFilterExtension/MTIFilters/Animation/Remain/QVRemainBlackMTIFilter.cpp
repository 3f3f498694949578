#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBaseRemainMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRemainBlackMTIFilterClass;
const QVFilterClass QVRemainBlackMTIFilterClass{
    .name = "QVRemainBlackMTIFilter",
    .superclass = &QVBaseRemainMTIFilterClass,
    .title = "Black fade",
    .help = "The picture comes out of the dark, lights first, or sinks into it",
    .tags = {"fade in", "fade out", "fade to black"},
};

}  // namespace qv
