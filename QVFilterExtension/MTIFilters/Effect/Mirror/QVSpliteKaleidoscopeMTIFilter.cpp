#include "QVFilterExtension/MTIFilters/Effect/Mirror/QVSpliteKaleidoscopeMTIFilter.h"

namespace qv {

namespace {
using Effect = QVSpliteKaleidoscopeMTIFilter;
}  // namespace

const QVFilterClass QVSpliteKaleidoscopeMTIFilterClass{
    .name = "QVSpliteKaleidoscopeMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Kaleidoscope",
    .help = "Sectors around the middle, each the reflection of its neighbours",
    .tags = {"mirror", "sectors", "psychedelic", "pattern"},
    .factory = makeFilter<QVSpliteKaleidoscopeMTIFilter>,
    .category = QVFilterCategory::mirror,
    .properties =
        {
            qvProperty<&Effect::splitNumber, &Effect::setSplitNumber>({
                .name = "splitNumber",
                .title = "Sectors",
                .help = "number of sectors around the circle",
                .minimum = 1,
                .maximum = 64,
                .unit = QVUnit::count,
                .step = 1,
            }),
        },
};

QVSpliteKaleidoscopeMTIFilter::QVSpliteKaleidoscopeMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {
    QVSpliteKaleidoscopeMTIFilter::setEffectValue(effectValue());
}

void QVSpliteKaleidoscopeMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    splitNumber_ = 1.0f + 18.0f * value;
}

MTIParameters QVSpliteKaleidoscopeMTIFilter::parameters() const {
    return {{"splitNumber", float(splitNumber_)}};
}

}  // namespace qv
