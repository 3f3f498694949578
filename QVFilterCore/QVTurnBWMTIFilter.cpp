#include "QVFilterCore/QVTurnBWMTIFilter.h"

namespace qv {

const QVFilterClass QVTurnBWMTIFilterClass{
    .name = "QVTurnBWMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Black and white",
    .help = "Turns the picture to black and white",
    .tags = {"monochrome", "grayscale", "greyscale", "desaturate"},
    .factory = makeFilter<QVTurnBWMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .properties = {qvProperty<&QVTurnBWMTIFilter::strength, &QVTurnBWMTIFilter::setStrength>({
        .name = "strength",
        .help = "share of the black-and-white picture",
        .unit = QVUnit::fraction,
    })},
};

MTIImage QVTurnBWMTIFilter::outputImage() {
    if (strength_ == 0) return inputImage();
    saturationFilter_.setInputImage(inputImage());
    saturationFilter_.setSaturation(1 - strength_);
    saturationFilter_.setOutputPixelFormat(outputPixelFormat());
    return saturationFilter_.outputImage();
}

}  // namespace qv
