#include "QVFilterExtension/MTIFilters/Animation/Periodic/QVWhiteCoverPEMTIFilter.h"

namespace qv {

const QVFilterClass QVWhiteCoverPEMTIFilterClass{
    .name = "QVWhiteCoverPEMTIFilter",
    .superclass = &QVColCoverPEMTIFilterClass,
    .help = "White closes over the picture on the beat, like a camera's flash",
    .factory = makeFilter<QVWhiteCoverPEMTIFilter>,
    .fragmentFunction = "QVColCoverPEMTIFilter",
};

}  // namespace qv
