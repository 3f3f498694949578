#include "QVFilterCore/QVAdjustMTIFilter.h"

#include <cmath>

namespace qv {

namespace {
using Adjust = QVAdjustMTIFilter;
}  // namespace

const QVFilterClass QVAdjustMTIFilterClass{
    .name = "QVAdjustMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Warmth and brightness",
    .help = "Changes warmth and brightness",
    .tags = {"temperature", "white balance", "colour correction", "grade"},
    .factory = makeFilter<QVAdjustMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .properties =
        {
            qvProperty<&Adjust::warmth, &Adjust::setWarmth>({
                .name = "warmth",
                .help = "-1 cool to 1 warm",
                .minimum = -1,
                .unit = QVUnit::fraction,
            }),
            qvProperty<&Adjust::brightness, &Adjust::setBrightness>({
                .name = "brightness",
                .help = "-1 dark to 1 bright; black and white stay",
                .minimum = -1,
                .unit = QVUnit::fraction,
            }),
        },
};

MTIParameters QVAdjustMTIFilter::parameters() const {
    // Stops of red and blue at full warmth.
    constexpr float kRedStops = 0.30f, kBlueStops = -0.45f;
    const float red = std::exp2(kRedStops * warmth()), blue = std::exp2(kBlueStops * warmth());
    const float luma = 0.2126f * red + 0.7152f + 0.0722f * blue;
    return {{"gain", MTIVector{red / luma, 1 / luma, blue / luma}}, {"bend", std::exp2(-2 * brightness())}};
}

MTIImage QVAdjustMTIFilter::outputImage() {
    if (warmth() == 0 && brightness() == 0) return inputImage();
    return QVMTIOneInputFilter::outputImage();
}

}  // namespace qv
