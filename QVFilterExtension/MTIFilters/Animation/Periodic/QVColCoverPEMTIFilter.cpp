#include "QVFilterExtension/MTIFilters/Animation/Periodic/QVColCoverPEMTIFilter.h"

namespace qv {

namespace {
using Effect = QVColCoverPEMTIFilter;
}  // namespace

const QVFilterClass QVColCoverPEMTIFilterClass{
    .name = "QVColCoverPEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .help = "A colour closes over the picture on the beat",
    .factory = makeFilter<QVColCoverPEMTIFilter>,
    .properties = {qvProperty<&Effect::coverCol, &Effect::setCoverCol>("coverCol", "the colour that covers")},
};

MTIParameters QVColCoverPEMTIFilter::parameters() const {
    MTIParameters all = QVPeriodicEffectMTIFilter::parameters();
    all.set("coverCol", rgbaVectorFromUIColor(coverCol_));
    return all;
}

}  // namespace qv
