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
    .help = "The clips are pushed through the frame like a strip of film",
    .factory = makeFilter<QVScrollTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::scrollType, &Transition::setScrollType>(
                "scrollType", 0, kScrollTypes.size() - 1,
                "where the picture moves to, and whether several turns pass", kScrollTypes),
        },
};

MTIParameters QVScrollTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = QVTransitionMTIFilter::parameters();
    uniforms.set("scrollType", scrollType_);
    uniforms.set("inputSize", MTIVector::vectorWithCGSize(inputImage1().size()));
    return uniforms;
}

}  // namespace qv
