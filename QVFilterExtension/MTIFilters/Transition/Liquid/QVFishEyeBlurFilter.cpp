#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVFishEyeBlurFilter.h"

namespace qv {

const QVFilterClass QVFishEyeBlurFilterClass{
    .name = "QVFishEyeBlurFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .help = "A blur sideways and out of the middle of the frame",
    .factory = makeFilter<QVFishEyeBlurFilter>,
    .inputs = QVFilterInputs::one,
    .kind = QVFilterKind::auxiliary,
};

}  // namespace qv
