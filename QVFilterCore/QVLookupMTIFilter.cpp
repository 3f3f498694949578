#include "QVFilterCore/QVLookupMTIFilter.h"

namespace qv {

const QVFilterClass QVLookupMTIFilterClass{
    .name = "QVLookupMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "grades the colours by a look-up table",
    .factory = makeFilter<QVLookupMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .properties = {qvProperty<&QVLookupMTIFilter::intensity, &QVLookupMTIFilter::setIntensity>(
        "intensity", 0, 1, "share of the graded picture")},
};

MTIImage QVLookupMTIFilter::outputImage() {
    if (!inputColorLookupTable_) return inputImage();
    return applyKernel({inputImage(), inputColorLookupTable_}, parameters());
}

}  // namespace qv
