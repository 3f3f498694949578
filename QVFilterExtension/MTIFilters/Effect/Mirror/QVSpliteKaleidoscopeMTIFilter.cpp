#include "QVFilterExtension/MTIFilters/Effect/Mirror/QVSpliteKaleidoscopeMTIFilter.h"

namespace qv {

namespace {
using Effect = QVSpliteKaleidoscopeMTIFilter;
}  // namespace

const QVFilterClass QVSpliteKaleidoscopeMTIFilterClass{
    .name = "QVSpliteKaleidoscopeMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Sectors around the middle, each the reflection of its neighbours",
    .factory = makeFilter<QVSpliteKaleidoscopeMTIFilter>,
    .category = QVFilterCategory::mirror,
    .properties =
        {
            qvProperty<&Effect::splitNumber, &Effect::setSplitNumber>("splitNumber", 1, 64,
                                                                      "number of sectors around the circle"),
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
