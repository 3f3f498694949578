#include "QVFilterExtension/MTIFilters/Animation/Steps/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVSpinFallAnimFilterClass;
const QVFilterClass QVSpinFallAnimFilterClass{
    .name = "QVSpinFallAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .title = "Spin in, fall out",
    .help = "Comes spinning to a rest, then falls out of the frame",
    .tags = {"rotate", "drop", "entrance", "exit"},
};

}  // namespace qv
