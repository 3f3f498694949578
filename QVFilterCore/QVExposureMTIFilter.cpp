#include "QVFilterCore/QVExposureMTIFilter.h"

namespace qv {

const QVFilterClass QVExposureMTIFilterClass{
    .name = "QVExposureMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Exposure",
    .help = "Brightens or darkens by stops",
    .tags = {"brightness", "stops", "light", "colour correction"},
    .factory = makeFilter<QVExposureMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .properties = {qvProperty<&QVExposureMTIFilter::exposure, &QVExposureMTIFilter::setExposure>({
        .name = "exposure",
        .title = "Exposure",
        .help = "brighter above 0, darker below",
        .minimum = -10,
        .maximum = 10,
        .unit = QVUnit::stops,
        .step = 0.1,
    })},
};

MTIImage QVExposureMTIFilter::outputImage() {
    if (exposure() == 0) return inputImage();
    exposureFilter_.setInputImage(inputImage());
    exposureFilter_.setOutputPixelFormat(outputPixelFormat());
    return exposureFilter_.outputImage();
}

}  // namespace qv
