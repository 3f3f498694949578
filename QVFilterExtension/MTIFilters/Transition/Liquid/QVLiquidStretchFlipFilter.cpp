#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidStretchFlipFilter.h"

namespace qv {

const QVFilterClass QVLiquidStretchFlipFilterClass{
    .name = "QVLiquidStretchFlipFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .help = "The picture mirrored left to right",
    .factory = makeFilter<QVLiquidStretchFlipFilter>,
    .inputs = QVFilterInputs::one,
    .kind = QVFilterKind::auxiliary,
};

}  // namespace qv
