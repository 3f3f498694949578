#include "QVFilterExtension/MTIFilters/Animation/Periodic/QVWhiteCoverPEMTIFilter.h"

namespace qv {

const QVFilterClass QVWhiteCoverPEMTIFilterClass{
    .name = "QVWhiteCoverPEMTIFilter",
    .superclass = &QVColCoverPEMTIFilterClass,
    .title = "White beat",
    .help = "White closes over the picture on the beat, as an iris does",
    .tags = {"flash", "strobe", "iris", "music"},
    .factory = makeFilter<QVWhiteCoverPEMTIFilter>,
    .fragmentFunction = "QVColCoverPEMTIFilter",
};

}  // namespace qv
