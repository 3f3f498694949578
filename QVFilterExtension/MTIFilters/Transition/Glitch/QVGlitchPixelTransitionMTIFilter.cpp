#include "QVFilterExtension/MTIFilters/Transition/Glitch/QVGlitchTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVGlitchPixelTransitionMTIFilterClass;
const QVFilterClass QVGlitchPixelTransitionMTIFilterClass{
    .name = "QVGlitchPixelTransitionMTIFilter",
    .superclass = &QVGlitchTransitionMTIFilterClass,
    .title = "Pixel swap",
    .help = "Pixels grow to blocks, which are swapped one after another",
    .tags = {"glitch", "pixelate", "blocks", "mosaic", "digital"},
};

}  // namespace qv
