#include "QVFilterExtension/MTIFilters/Transition/Motion/QVScrollTransitionMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Transition = QVScrollTransitionMTIFilter;
constexpr std::array<std::string_view, 8> kScrollTypes = {
    "left", "right", "up", "down", "rolling left", "rolling right", "rolling up", "rolling down"};
}  // namespace

const QVFilterClass QVScrollTransitionMTIFilterClass{
    .name = "QVScrollTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Film strip push",
    .help = "The clips are pushed through the frame like a strip of film",
    .tags = {"slide", "scroll", "whip pan"},
    .factory = makeFilter<QVScrollTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::scrollType, &Transition::setScrollType>({
                .name = "scrollType",
                .title = "Direction",
                .help = "where the picture moves to, and whether several turns pass",
                .variants = kScrollTypes,
            }),
        },
};

MTIParameters QVScrollTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = QVTransitionMTIFilter::parameters();
    uniforms.set("scrollType", scrollType_);
    uniforms.set("inputSize", MTIVector::vectorWithCGSize(inputImage1().size()));
    return uniforms;
}

}  // namespace qv
