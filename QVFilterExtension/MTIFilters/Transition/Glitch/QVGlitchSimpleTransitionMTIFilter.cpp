#include "QVFilterExtension/MTIFilters/Transition/Glitch/QVGlitchTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVGlitchSimpleTransitionMTIFilterClass;
const QVFilterClass QVGlitchSimpleTransitionMTIFilterClass{
    .name = "QVGlitchSimpleTransitionMTIFilter",
    .superclass = &QVGlitchTransitionMTIFilterClass,
    .title = "Flicker glitch",
    .help = "Colours part and lines tear while the picture flickers over",
    .tags = {"chromatic", "rgb", "tear", "digital"},
};

}  // namespace qv
