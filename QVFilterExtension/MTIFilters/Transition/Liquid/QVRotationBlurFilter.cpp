#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVRotationBlurFilter.h"

namespace qv {

const QVFilterClass QVRotationBlurFilterClass{
    .name = "QVRotationBlurFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Rotation blur",
    .help = "A blur around the middle of the frame",
    .tags = {"spin blur", "radial blur"},
    .factory = makeFilter<QVRotationBlurFilter>,
    .inputs = {{kInputImage1}},
    .kind = QVFilterKind::auxiliary,
};

}  // namespace qv
