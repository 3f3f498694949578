#include "QVFilterCore/QVTurnBWMTIFilter.h"

namespace qv {

const QVFilterClass QVTurnBWMTIFilterClass{
    .name = "QVTurnBWMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "turns the picture to black and white",
    .factory = makeFilter<QVTurnBWMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .properties = {qvProperty<&QVTurnBWMTIFilter::strength, &QVTurnBWMTIFilter::setStrength>(
        "strength", 0, 1, "share of the black-and-white picture")},
};

MTIImage QVTurnBWMTIFilter::outputImage() {
    if (strength_ == 0) return inputImage();
    saturationFilter_.setInputImage(inputImage());
    saturationFilter_.setSaturation(1 - strength_);
    saturationFilter_.setOutputPixelFormat(outputPixelFormat());
    return saturationFilter_.outputImage();
}

}  // namespace qv
