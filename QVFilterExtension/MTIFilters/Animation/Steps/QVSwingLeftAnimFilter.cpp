#include "QVFilterExtension/MTIFilters/Animation/Steps/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVSwingLeftAnimFilterClass;
const QVFilterClass QVSwingLeftAnimFilterClass{
    .name = "QVSwingLeftAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .help = "Hung above the frame, swings in and later out to the left",
};

}  // namespace qv
