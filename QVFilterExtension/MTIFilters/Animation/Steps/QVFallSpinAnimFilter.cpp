#include "QVFilterExtension/MTIFilters/Animation/Steps/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVFallSpinAnimFilterClass;
const QVFilterClass QVFallSpinAnimFilterClass{
    .name = "QVFallSpinAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .help = "Falls into place from above, then spins away towards the viewer",
};

}  // namespace qv
