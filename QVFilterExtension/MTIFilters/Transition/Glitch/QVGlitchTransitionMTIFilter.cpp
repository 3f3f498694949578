#include "QVFilterExtension/MTIFilters/Transition/Glitch/QVGlitchTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVGlitchTransitionMTIFilterClass{
    .name = "QVGlitchTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Digital glitch",
    .help = "A broken digital signal: displaced blocks and slices, parted colours",
    .tags = {"chromatic", "rgb", "blocks", "datamosh", "signal"},
    .factory = makeFilter<QVGlitchTransitionMTIFilter>,
};

MTIParameters QVGlitchTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = timingParameters(progress());
    uniforms.set("ratio", ratio());
    uniforms.set("inputSize", MTIVector::vectorWithCGSize(inputImage1().size()));
    return uniforms;
}

}  // namespace qv
