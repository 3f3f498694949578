#include "QVFilterCore/QVLookupMTIFilter.h"

namespace qv {

const QVFilterClass QVLookupMTIFilterClass{
    .name = "QVLookupMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Look-up table",
    .help = "Grades the colours by a look-up table",
    .tags = {"lut", "grade", "colour grading", "film look", "preset"},
    .factory = makeFilter<QVLookupMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .inputs = {{kInputImage,
                qvInput<&QVLookupMTIFilter::setInputColorLookupTable>(
                    {.name = "inputColorLookupTable",
                     .role = QVInputRole::table,
                     .help = "64 levels of each colour as 512x512 pixels; without one nothing changes",
                     .isRequired = false})}},
    .properties = {qvProperty<&QVLookupMTIFilter::intensity, &QVLookupMTIFilter::setIntensity>({
        .name = "intensity",
        .title = "Intensity",
        .help = "share of the graded picture",
        .unit = QVUnit::fraction,
    })},
};

MTIImage QVLookupMTIFilter::outputImage() {
    if (!inputColorLookupTable_) return inputImage();
    return applyKernel({inputImage(), inputColorLookupTable_}, parameters());
}

}  // namespace qv
