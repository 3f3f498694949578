#include "QVFilterExtension/MTIFilters/Transition/Flash/QVColorFlashTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVColorFlashTransitionMTIFilterClass{
    .name = "QVColorFlashTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Light leak",
    .help = "Coloured light leaks in and sweeps the picture away",
    .tags = {"flash", "film burn", "flare", "colour", "glow"},
    .factory = makeFilter<QVColorFlashTransitionMTIFilter>,
};

}  // namespace qv
