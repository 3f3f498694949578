#include "QVFilterCore/QVExposureMTIFilter.h"

namespace qv {

const QVFilterClass QVExposureMTIFilterClass{
    .name = "QVExposureMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "brightens or darkens by stops",
    .factory = makeFilter<QVExposureMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .properties = {qvProperty<&QVExposureMTIFilter::exposure, &QVExposureMTIFilter::setExposure>(
        "exposure", -10, 10, "stops: 1 doubles the colour, -1 halves it")},
};

MTIImage QVExposureMTIFilter::outputImage() {
    if (exposure() == 0) return inputImage();
    exposureFilter_.setInputImage(inputImage());
    exposureFilter_.setOutputPixelFormat(outputPixelFormat());
    return exposureFilter_.outputImage();
}

}  // namespace qv
