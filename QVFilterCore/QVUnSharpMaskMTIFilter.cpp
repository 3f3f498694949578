#include "QVFilterCore/QVUnSharpMaskMTIFilter.h"

namespace qv {

namespace {
using UnSharp = QVUnSharpMaskMTIFilter;
}  // namespace

const QVFilterClass QVUnSharpMaskMTIFilterClass{
    .name = "QVUnSharpMaskMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Sharpen",
    .help = "Sharpens by an unsharp mask",
    .tags = {"unsharp mask", "detail", "clarity", "crisp"},
    .factory = makeFilter<QVUnSharpMaskMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .properties =
        {
            qvProperty<&UnSharp::intensity, &UnSharp::setIntensity>({
                .name = "intensity",
                .help = "how much of the detail is added",
                .maximum = 5,
                .unit = QVUnit::factor,
                .step = 0.05,
            }),
            qvProperty<&UnSharp::radius, &UnSharp::setRadius>({
                .name = "radius",
                .help = "size of the detail: standard deviation of the blur",
                .maximum = 200,
                .unit = QVUnit::pixels,
                .step = 0.5,
            }),
        },
};

MTIImage QVUnSharpMaskMTIFilter::outputImage() {
    if (intensity_ == 0 || !(radius() > 0)) return inputImage();
    blurFilter_.setInputImage(inputImage());
    return applyKernel({inputImage(), blurFilter_.outputImage()}, parameters());
}

}  // namespace qv
