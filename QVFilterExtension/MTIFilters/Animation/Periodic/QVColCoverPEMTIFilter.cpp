#include "QVFilterExtension/MTIFilters/Animation/Periodic/QVColCoverPEMTIFilter.h"

namespace qv {

namespace {
using Effect = QVColCoverPEMTIFilter;
}  // namespace

const QVFilterClass QVColCoverPEMTIFilterClass{
    .name = "QVColCoverPEMTIFilter",
    .superclass = &QVPeriodicEffectMTIFilterClass,
    .title = "Colour beat",
    .help = "A colour closes over the picture on the beat, as an iris does",
    .tags = {"flash", "strobe", "cover", "tint", "music"},
    .factory = makeFilter<QVColCoverPEMTIFilter>,
    .properties = {qvProperty<&Effect::coverCol, &Effect::setCoverCol>({
        .name = "coverCol",
        .title = "Colour",
        .help = "the colour that covers",
    })},
};

MTIParameters QVColCoverPEMTIFilter::parameters() const {
    MTIParameters all = QVPeriodicEffectMTIFilter::parameters();
    all.set("coverCol", rgbaVectorFromUIColor(coverCol_));
    return all;
}

}  // namespace qv
