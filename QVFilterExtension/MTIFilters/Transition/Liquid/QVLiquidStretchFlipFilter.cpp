#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidStretchFlipFilter.h"

namespace qv {

const QVFilterClass QVLiquidStretchFlipFilterClass{
    .name = "QVLiquidStretchFlipFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Flip left to right",
    .help = "The picture mirrored left to right",
    .tags = {"mirror", "reflect", "horizontal"},
    .factory = makeFilter<QVLiquidStretchFlipFilter>,
    .inputs = {{kInputImage1}},
    .kind = QVFilterKind::auxiliary,
};

}  // namespace qv
