#include "QVFilterExtension/MTIFilters/Animation/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVSwingLeftAnimFilterClass;
const QVFilterClass QVSwingLeftAnimFilterClass{
    .name = "QVSwingLeftAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .help = "Swings out to the left and back, hung above the frame",
};

}  // namespace qv
