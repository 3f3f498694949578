#include "QVFilterExtension/MTIFilters/Animation/Steps/QVTwoStepsAnimFilter.h"

namespace qv {

extern const QVFilterClass QVSwingLeftAnimFilterClass;
const QVFilterClass QVSwingLeftAnimFilterClass{
    .name = "QVSwingLeftAnimFilter",
    .superclass = &QVTwoStepsAnimFilterClass,
    .title = "Swing left",
    .help = "Hung above the frame, swings in and later out to the left",
    .tags = {"pendulum", "entrance", "exit", "hang"},
};

}  // namespace qv
