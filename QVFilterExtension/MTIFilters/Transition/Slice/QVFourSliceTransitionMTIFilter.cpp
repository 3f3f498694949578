#include "QVFilterExtension/MTIFilters/Transition/Slice/QVFourSliceTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVFourSliceTransitionMTIFilterClass{
    .name = "QVFourSliceTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Four quarters",
    .help = "Four quarters in which the clips pass by in four directions",
    .tags = {"slice", "split", "push", "slide"},
    .factory = makeFilter<QVFourSliceTransitionMTIFilter>,
};

}  // namespace qv
