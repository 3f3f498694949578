#include "QVFilterExtension/MTIFilters/Animation/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVFallSpinAnimFilterClass;
const QVFilterClass QVFallSpinAnimFilterClass{
    .name = "QVFallSpinAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .help = "Falls out of its place towards the viewer, then spins back into it",
};

}  // namespace qv
