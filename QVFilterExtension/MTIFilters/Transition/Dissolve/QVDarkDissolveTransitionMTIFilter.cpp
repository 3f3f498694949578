#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVDarkDissolveTransitionMTIFilterClass;
const QVFilterClass QVDarkDissolveTransitionMTIFilterClass{
    .name = "QVDarkDissolveTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .help = "Sinks into the dark shadows first; the other clip rises out of it lights first",
};

}  // namespace qv
