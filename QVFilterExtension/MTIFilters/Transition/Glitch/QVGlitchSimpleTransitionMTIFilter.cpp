#include "QVFilterExtension/MTIFilters/Transition/Glitch/QVGlitchTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVGlitchSimpleTransitionMTIFilterClass;
const QVFilterClass QVGlitchSimpleTransitionMTIFilterClass{
    .name = "QVGlitchSimpleTransitionMTIFilter",
    .superclass = &QVGlitchTransitionMTIFilterClass,
    .help = "Colours part and lines tear while the picture flickers over",
};

}  // namespace qv
