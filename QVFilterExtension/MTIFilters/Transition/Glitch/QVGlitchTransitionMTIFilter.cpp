#include "QVFilterExtension/MTIFilters/Transition/Glitch/QVGlitchTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVGlitchTransitionMTIFilterClass{
    .name = "QVGlitchTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .help = "A broken digital signal: displaced blocks and slices, parted colours",
    .factory = makeFilter<QVGlitchTransitionMTIFilter>,
};

MTIParameters QVGlitchTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = timingParameters(progress());
    uniforms.set("ratio", ratio());
    uniforms.set("inputSize", MTIVector::vectorWithCGSize(inputImage1().size()));
    return uniforms;
}

}  // namespace qv
