#include "QVFilterExtension/MTIFilters/Transition/Flash/QVColorFlashTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVColorFlashTransitionMTIFilterClass{
    .name = "QVColorFlashTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .help = "Coloured light leaks in and sweeps the picture away",
    .factory = makeFilter<QVColorFlashTransitionMTIFilter>,
};

}  // namespace qv
