#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVDarkDissolveTransitionMTIFilterClass;
const QVFilterClass QVDarkDissolveTransitionMTIFilterClass{
    .name = "QVDarkDissolveTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Dissolve through darkness",
    .help = "Sinks into the dark shadows first; the other clip rises out of it lights first",
    .tags = {"crossfade", "fade", "black", "shadows"},
};

}  // namespace qv
