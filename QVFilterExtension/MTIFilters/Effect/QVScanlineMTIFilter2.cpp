#include "QVFilterExtension/MTIFilters/Effect/QVScanlineMTIFilter2.h"

#include "QVFilterExtension/MTIFilters/Effect/QVScanlineMTIFilter.h"

namespace qv {

namespace {
using Effect = QVScanlineMTIFilter2;
}  // namespace

const QVFilterClass QVScanlineMTIFilter2Class{
    .name = "QVScanlineMTIFilter2",
    .superclass = &QVEffectMTIFilterClass,
    .help = "The lines of a television tube",
    .factory = makeFilter<QVScanlineMTIFilter2>,
    .category = QVFilterCategory::retro,
    .fragmentFunction = "QVScanlineMTIFilter",
    .properties =
        {
            qvProperty<&Effect::value, &Effect::setValue>("value", 0, 1, "strength of the pattern"),
        },
};

QVScanlineMTIFilter2::QVScanlineMTIFilter2(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {
    QVScanlineMTIFilter2::setEffectValue(effectValue());
}

void QVScanlineMTIFilter2::setEffectValue(float value) {
    const ScanlineSetting setting = scanlineSetting(value);
    setLevel(setting.level);
    value_ = setting.value;
}

MTIParameters QVScanlineMTIFilter2::parameters() const {
    return {{"level", std::int32_t(level())}, {"effectValue", float(value_)}};
}

}  // namespace qv
