#include "QVFilterExtension/MTIFilters/Effect/Mosaic/QVMosaicMTIFilter.h"

namespace qv {

namespace {
using Effect = QVMosaicMTIFilter;
}  // namespace

const QVFilterClass QVMosaicMTIFilterClass{
    .name = "QVMosaicMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Square blocks of one colour",
    .factory = makeFilter<QVMosaicMTIFilter>,
    .category = QVFilterCategory::mosaic,
    .properties =
        {
            qvProperty<&Effect::factor, &Effect::setFactor>(
                "factor", 1, 1080, "side of a block, 1/1080 of the frame's shorter side"),
        },
};

QVMosaicMTIFilter::QVMosaicMTIFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVMosaicMTIFilter::setEffectValue(effectValue());
}

MTIParameters QVMosaicMTIFilter::parameters() const {
    return {{"factor", float(factor_)}};
}

}  // namespace qv
