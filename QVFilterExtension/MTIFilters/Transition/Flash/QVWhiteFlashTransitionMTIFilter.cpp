#include "QVFilterExtension/MTIFilters/Transition/Flash/QVWhiteFlashTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVWhiteFlashTransitionMTIFilterClass{
    .name = "QVWhiteFlashTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "White flash",
    .help = "A white flash: overexposed in an instant, then the light falls off",
    .tags = {"camera flash", "photo", "overexposed", "strobe"},
    .factory = makeFilter<QVWhiteFlashTransitionMTIFilter>,
};

}  // namespace qv
