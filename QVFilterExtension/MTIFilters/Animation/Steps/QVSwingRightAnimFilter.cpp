#include "QVFilterExtension/MTIFilters/Animation/Steps/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVSwingRightAnimFilterClass;
const QVFilterClass QVSwingRightAnimFilterClass{
    .name = "QVSwingRightAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .help = "Hung above the frame, swings in and later out to the right",
};

}  // namespace qv
