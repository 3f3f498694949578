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
                                          "half, loss of colour in blue"})}},
    .properties = {qvProperty<&Vhs::effectValue, &Vhs::setEffectValue>({
        .name = "effectValue",
        .title = "Strength",
        .help = "how worn the tape is",
        .unit = QVUnit::fraction,
    })},
};

}  // namespace qv
