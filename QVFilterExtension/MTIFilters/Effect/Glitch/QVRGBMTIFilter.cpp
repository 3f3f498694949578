#include "QVFilterExtension/MTIFilters/Effect/Glitch/QVRGBMTIFilter.h"

#include <cmath>

namespace qv {

namespace {
using Effect = QVRGBMTIFilter;
}  // namespace

const QVFilterClass QVRGBMTIFilterClass{
    .name = "QVRGBMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "RGB split",
    .help = "Red and blue part from green",
    .tags = {"chromatic", "aberration", "colour shift", "glitch", "3d", "vhs"},
    .factory = makeFilter<QVRGBMTIFilter>,
    .category = QVFilterCategory::glitch,
    .properties =
        {
            qvProperty<&Effect::xOff, &Effect::setXOff>({
                .name = "xOff",
                .title = "Offset",
                .help = "how far red and blue part",
                .minimum = -0.25,
                .maximum = 0.25,
                .unit = QVUnit::frameSides,
                .step = 0.005,
            }),
        },
};

QVRGBMTIFilter::QVRGBMTIFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVRGBMTIFilter::setEffectValue(effectValue());
}

void QVRGBMTIFilter::setEffectValue(float value) {
    setLevel(std::int64_t(std::floor(2.99f * value)));
    xOff_ = 0.049 * 3 * (double(value) - double(level()) / 3) + 0.001;
}

MTIParameters QVRGBMTIFilter::parameters() const {
    MTIParameters all = QVEffectMTIFilter::parameters();
    all.set("xOff", float(xOff_));
    return all;
}

}  // namespace qv
