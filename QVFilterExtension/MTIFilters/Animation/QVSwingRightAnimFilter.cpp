#include "QVFilterExtension/MTIFilters/Animation/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVSwingRightAnimFilterClass;
const QVFilterClass QVSwingRightAnimFilterClass{
    .name = "QVSwingRightAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .help = "Swings out to the right and back, hung above the frame",
};

}  // namespace qv
