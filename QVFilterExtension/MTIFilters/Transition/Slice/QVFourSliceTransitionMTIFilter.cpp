#include "QVFilterExtension/MTIFilters/Transition/Slice/QVFourSliceTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVFourSliceTransitionMTIFilterClass{
    .name = "QVFourSliceTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .help = "Four quarters in which the clips pass by in four directions",
    .factory = makeFilter<QVFourSliceTransitionMTIFilter>,
};

}  // namespace qv
