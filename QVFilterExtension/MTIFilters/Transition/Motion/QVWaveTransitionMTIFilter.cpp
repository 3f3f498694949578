#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVWaveTransitionMTIFilterClass;

const QVFilterClass QVWaveTransitionMTIFilterClass{
    .name = "QVWaveTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Ripple",
    .help = "Ripples run outwards from the middle and turn one clip into the other",
    .tags = {"wave", "water", "drop", "rings"},
    .factory = makeFilter<QVTransitionMTIFilter>,
};

}  // namespace qv
