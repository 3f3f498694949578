#include "QVFilterExtension/MTIFilters/Effect/Split/QVSplitChangeFilter.h"

namespace qv {

namespace {
using Effect = QVSplitChangeFilter;
}  // namespace

const QVFilterClass QVSplitChangeFilterClass{
    .name = "QVSplitChangeFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A grid of small frames, four to twelve each way",
    .factory = makeFilter<QVSplitChangeFilter>,
    .category = QVFilterCategory::split,
    .fragmentFunction = "QVSplitFilter",
    .levelCount = 0,
    .properties =
        {
            qvProperty<&Effect::sliceNumber, &Effect::setSliceNumber>(
                "sliceNumber", 1, 64, "number of small frames along each side"),
        },
};

QVSplitChangeFilter::QVSplitChangeFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVSplitChangeFilter::setEffectValue(effectValue());
}

void QVSplitChangeFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    sliceNumber_ = int(4 + 8 * double(value));
}

MTIParameters QVSplitChangeFilter::parameters() const {
    return {{"splitNumber", float(sliceNumber_)}, {"splitDirection", 2}};
}

}  // namespace qv
