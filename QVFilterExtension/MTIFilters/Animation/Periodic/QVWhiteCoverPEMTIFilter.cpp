#include "QVFilterExtension/MTIFilters/Animation/Periodic/QVWhiteCoverPEMTIFilter.h"

namespace qv {

const QVFilterClass QVWhiteCoverPEMTIFilterClass{
    .name = "QVWhiteCoverPEMTIFilter",
    .superclass = &QVColCoverPEMTIFilterClass,
    .title = "White beat",
    .help = "White closes over the picture on the beat, like a camera's flash",
    .tags = {"flash", "strobe", "camera flash", "music"},
    .factory = makeFilter<QVWhiteCoverPEMTIFilter>,
    .fragmentFunction = "QVColCoverPEMTIFilter",
};

}  // namespace qv
