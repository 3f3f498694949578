#include "QVFilterExtension/MTIFilters/Animation/Steps/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVSwingRightAnimFilterClass;
const QVFilterClass QVSwingRightAnimFilterClass{
    .name = "QVSwingRightAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .title = "Swing right",
    .help = "Hung above the frame, swings in and later out to the right",
    .tags = {"pendulum", "entrance", "exit", "hang"},
};

}  // namespace qv
