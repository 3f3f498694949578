#include "QVFilterExtension/MTIFilters/Animation/Steps/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVFallSpinAnimFilterClass;
const QVFilterClass QVFallSpinAnimFilterClass{
    .name = "QVFallSpinAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .title = "Fall in, spin out",
    .help = "Falls into place from above, then spins away towards the viewer",
    .tags = {"drop", "rotate", "entrance", "exit"},
};

}  // namespace qv
