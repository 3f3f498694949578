#include "QVFilterExtension/MTIFilters/Effect/Film/QVVhsMTIFilter.h"

namespace qv {

namespace {
using Vhs = QVVhsMTIFilter;
}  // namespace

const QVFilterClass QVVhsMTIFilterClass{
    .name = "QVVhsMTIFilter",
    .superclass = &QVMTITwoInputFilterClass,
    .title = "Video cassette",
    .help = "Soft brightness, bleeding colour, and lines torn as a second picture says",
    .tags = {"vhs", "tape", "analog", "chroma bleed", "tracking", "glitch", "80s"},
    .factory = makeFilter<QVVhsMTIFilter>,
    .category = QVFilterCategory::film,
    .inputs = {{kInputImage, qvInput<&Vhs::setInputImage2>(
                                 {.name = "inputImage2",
                                  .role = QVInputRole::texture,
                                  .help = "noise in red about a quarter, throw of the lines in green about a "
                                          "half, loss of colour in blue",
                                  .isRequired = false})}},
    .properties = {qvProperty<&Vhs::effectValue, &Vhs::setEffectValue>({
        .name = "effectValue",
        .title = "Strength",
        .help = "how worn the tape is",
        .unit = QVUnit::fraction,
    })},
};

MTIImage QVVhsMTIFilter::outputImage() {
    const MTIImage tape =
        inputImage2() ? inputImage2() : MTIImage::initWithColor({0.25f, 0.5f, 0, 1}, false, {1, 1});
    return applyKernel({inputImage(), tape}, parameters());
}

}  // namespace qv
