#include "QVFilterExtension/MTIFilters/Effect/Split/QVSplitChangeFilter.h"

namespace qv {

namespace {
using Effect = QVSplitChangeFilter;
}  // namespace

const QVFilterClass QVSplitChangeFilterClass{
    .name = "QVSplitChangeFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Split screen grid",
    .help = "A grid of small frames, four to twelve each way",
    .tags = {"multi screen", "repeat", "tiles"},
    .factory = makeFilter<QVSplitChangeFilter>,
    .category = QVFilterCategory::split,
    .fragmentFunction = "QVSplitFilter",
    .properties =
        {
            qvProperty<&Effect::sliceNumber, &Effect::setSliceNumber>({
                .name = "sliceNumber",
                .title = "Frames along a side",
                .help = "number of small frames along each side",
                .minimum = 1,
                .maximum = 64,
                .unit = QVUnit::count,
            }),
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
