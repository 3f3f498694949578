#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBrightDissolveTransitionMTIFilterClass;
const QVFilterClass QVBrightDissolveTransitionMTIFilterClass{
    .name = "QVBrightDissolveTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Dissolve through light",
    .help = "Dissolves in light highlights first; the other clip comes out of it shadows first",
    .tags = {"crossfade", "fade", "white", "glow", "highlights"},
};

}  // namespace qv
