#include "QVFilterExtension/MTIFilters/Transition/Flash/QVWhiteFlashTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVWhiteFlashTransitionMTIFilterClass{
    .name = "QVWhiteFlashTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .help = "A white flash: overexposed in an instant, then the light falls off",
    .factory = makeFilter<QVWhiteFlashTransitionMTIFilter>,
};

}  // namespace qv
