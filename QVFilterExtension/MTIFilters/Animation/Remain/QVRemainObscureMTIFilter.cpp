#include "QVFilterExtension/MTIFilters/Animation/Remain/QVRemainObscureMTIFilter.h"

#include <algorithm>

namespace qv {

const QVFilterClass QVRemainObscureMTIFilterClass{
    .name = "QVRemainObscureMTIFilter",
    .superclass = &QVBlurClassFilterClass,
    .title = "Blur fade",
    .help = "The picture clears up out of a blur, or blurs away",
    .tags = {"defocus", "soft", "fade in", "fade out", "dreamy"},
    .factory = makeFilter<QVRemainObscureMTIFilter>,
};

MTIImage QVRemainObscureMTIFilter::outputImage() {
    const CGSize size = inputImage().extent().size;
    gaussFilter_.setInputImage(inputImage());
    gaussFilter_.setOutputPixelFormat(outputPixelFormat());
    gaussFilter_.setRadius(float((1 - mixStrength()) * 25 * std::min(size.width, size.height) / 720));
    return gaussFilter_.outputImage();
}

}  // namespace qv
