#include "QVFilterCore/QVUnSharpMaskMTIFilter.h"

namespace qv {

namespace {
using UnSharp = QVUnSharpMaskMTIFilter;
}  // namespace

const QVFilterClass QVUnSharpMaskMTIFilterClass{
    .name = "QVUnSharpMaskMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "sharpens by an unsharp mask",
    .factory = makeFilter<QVUnSharpMaskMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .properties =
        {
            qvProperty<&UnSharp::intensity, &UnSharp::setIntensity>("intensity", 0, 5,
                                                                    "how much of the detail is added"),
            qvProperty<&UnSharp::radius, &UnSharp::setRadius>(
                "radius", 0, 200, "size of the detail: standard deviation of the blur, pixels"),
        },
};

MTIImage QVUnSharpMaskMTIFilter::outputImage() {
    if (intensity_ == 0 || !(radius() > 0)) return inputImage();
    blurFilter_.setInputImage(inputImage());
    return applyKernel({inputImage(), blurFilter_.outputImage()}, parameters());
}

}  // namespace qv
