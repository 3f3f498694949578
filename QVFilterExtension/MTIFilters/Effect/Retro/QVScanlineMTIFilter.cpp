#include "QVFilterExtension/MTIFilters/Effect/Retro/QVScanlineMTIFilter.h"

#include <cmath>

namespace qv {

namespace {
using Effect = QVScanlineMTIFilter;
}  // namespace

const QVFilterClass QVScanlineMTIFilterClass{
    .name = "QVScanlineMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Scan lines",
    .help = "The lines of a television tube",
    .tags = {"crt", "vhs", "tv", "interlace", "monitor"},
    .factory = makeFilter<QVScanlineMTIFilter>,
    .category = QVFilterCategory::retro,
    .properties =
        {
            qvProperty<&Effect::value, &Effect::setValue>({
                .name = "value",
                .title = "Pattern strength",
                .help = "strength of the pattern",
                .unit = QVUnit::fraction,
            }),
        },
};

QVScanlineMTIFilter::QVScanlineMTIFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVScanlineMTIFilter::setEffectValue(effectValue());
}

void QVScanlineMTIFilter::setEffectValue(float value) {
    const double u = std::fmod(double(value) + 0.25, 1.0);
    // Not 2: the largest u below 1 must not reach a third pattern.
    const double level = std::floor(u * 1.999);
    setLevel(std::int64_t(level));
    value_ = 2 * (u - 0.5 * level);
}

MTIParameters QVScanlineMTIFilter::parameters() const {
    return {{"level", std::int32_t(level())}, {"effectValue", float(value_)}};
}

}  // namespace qv
