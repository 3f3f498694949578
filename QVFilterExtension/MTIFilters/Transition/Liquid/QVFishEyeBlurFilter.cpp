#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVFishEyeBlurFilter.h"

namespace qv {

const QVFilterClass QVFishEyeBlurFilterClass{
    .name = "QVFishEyeBlurFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Fisheye blur",
    .help = "A blur sideways and out of the middle of the frame",
    .tags = {"zoom blur", "radial blur", "lens"},
    .factory = makeFilter<QVFishEyeBlurFilter>,
    .inputs = {{kInputImage1}},
    .kind = QVFilterKind::auxiliary,
};

}  // namespace qv
