#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVRotationBlurFilter.h"

namespace qv {

const QVFilterClass QVRotationBlurFilterClass{
    .name = "QVRotationBlurFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .help = "A blur around the middle of the frame",
    .factory = makeFilter<QVRotationBlurFilter>,
    .inputs = QVFilterInputs::one,
    .kind = QVFilterKind::auxiliary,
};

}  // namespace qv
