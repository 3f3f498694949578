#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVLiquidTransitionMTIFilter.h"

namespace qv {

const QVFilterClass QVLiquidTransitionMTIFilterClass{
    .name = "QVLiquidTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Liquid transition",
    .help = "A transition that distorts the picture and cuts at the height of the distortion",
    .factory = makeFilter<QVLiquidTransitionMTIFilter>,
};

MTIImage QVLiquidTransitionMTIFilter::outputImage() {
    if (!inputImage1()) return {};
    if (!filterClass().input(QVInputRole::incoming)) return render({inputImage1()});
    return inputImage2() ? render({inputImage1(), inputImage2()}) : MTIImage();
}

MTIImage QVLiquidTransitionMTIFilter::render(std::vector<MTIImage> inputs) const {
    const auto kernel = filterClass().kernel();
    if (!kernel) return {};
    return kernel->applyToInputImages(std::move(inputs), parameters(), inputImage1().size(),
                                      outputPixelFormat());
}

}  // namespace qv
