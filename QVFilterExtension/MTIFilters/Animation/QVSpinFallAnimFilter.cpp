#include "QVFilterExtension/MTIFilters/Animation/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVSpinFallAnimFilterClass;
const QVFilterClass QVSpinFallAnimFilterClass{
    .name = "QVSpinFallAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .help = "Spins once while it is tossed up towards the viewer, then falls back into place",
};

}  // namespace qv
