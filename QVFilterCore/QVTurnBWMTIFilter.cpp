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
    .properties =
        {
            qvProperty<&QVTurnBWMTIFilter::strength, &QVTurnBWMTIFilter::setStrength>({
                .name = "strength",
                .help = "share of the black-and-white picture",
                .unit = QVUnit::fraction,
            }),
            qvProperty<&QVTurnBWMTIFilter::contrast, &QVTurnBWMTIFilter::setContrast>({
                .name = "contrast",
                .help = "from a soft grey to a print in black ink",
                .unit = QVUnit::fraction,
            }),
        },
};

MTIParameters QVTurnBWMTIFilter::parameters() const {
    return {{"strength", strength_}, {"contrast", contrast_}};
}

MTIImage QVTurnBWMTIFilter::outputImage() {
    return strength_ == 0 ? inputImage() : QVMTIOneInputFilter::outputImage();
}

}  // namespace qv
