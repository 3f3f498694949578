#include "QVFilterExtension/MTIFilters/Effect/Mosaic/QVMosaicMTIFilter.h"

namespace qv {

namespace {
using Effect = QVMosaicMTIFilter;
}  // namespace

const QVFilterClass QVMosaicMTIFilterClass{
    .name = "QVMosaicMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Mosaic",
    .help = "Square blocks of one colour",
    .tags = {"pixelate", "blocks", "censor", "privacy", "8 bit", "retro game"},
    .factory = makeFilter<QVMosaicMTIFilter>,
    .category = QVFilterCategory::mosaic,
    .properties =
        {
            qvProperty<&Effect::factor, &Effect::setFactor>({
                .name = "factor",
                .title = "Block size",
                .help = "side of a block",
                .minimum = 1,
                .maximum = 1080,
                .unit = QVUnit::pixels1080,
                .step = 1,
            }),
        },
};

QVMosaicMTIFilter::QVMosaicMTIFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVMosaicMTIFilter::setEffectValue(effectValue());
}

MTIParameters QVMosaicMTIFilter::parameters() const {
    return {{"factor", float(factor_)}};
}

}  // namespace qv
