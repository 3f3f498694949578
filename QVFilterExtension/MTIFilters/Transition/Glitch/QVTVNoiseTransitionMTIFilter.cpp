#include "QVFilterExtension/MTIFilters/Transition/Glitch/QVTVNoiseTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVTVNoiseTransitionMTIFilterClass{
    .name = "QVTVNoiseTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Television noise",
    .help = "A television set between two stations: snow, rolling, torn lines",
    .tags = {"vhs", "static", "snow", "channel change", "analog"},
    .factory = makeFilter<QVTVNoiseTransitionMTIFilter>,
};

MTIParameters QVTVNoiseTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = timingParameters(progress());
    uniforms.set("ratio", ratio());
    uniforms.set("inputSize", MTIVector::vectorWithCGSize(inputImage1().size()));
    return uniforms;
}

}  // namespace qv
