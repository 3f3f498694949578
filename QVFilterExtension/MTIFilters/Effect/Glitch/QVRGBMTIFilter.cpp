#include "QVFilterExtension/MTIFilters/Effect/Glitch/QVRGBMTIFilter.h"

#include <cmath>

namespace qv {

namespace {
using Effect = QVRGBMTIFilter;
}  // namespace

const QVFilterClass QVRGBMTIFilterClass{
    .name = "QVRGBMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Red and blue part from green",
    .factory = makeFilter<QVRGBMTIFilter>,
    .category = QVFilterCategory::glitch,
    .properties =
        {
            qvProperty<&Effect::xOff, &Effect::setXOff>("xOff", -0.25, 0.25,
                                                        "how far the colours part, widths of the frame"),
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
