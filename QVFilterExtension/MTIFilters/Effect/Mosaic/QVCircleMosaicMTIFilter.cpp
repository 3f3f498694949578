#include "QVFilterExtension/MTIFilters/Effect/Mosaic/QVCircleMosaicMTIFilter.h"

namespace qv {

namespace {
using Effect = QVCircleMosaicMTIFilter;
}  // namespace

const QVFilterClass QVCircleMosaicMTIFilterClass{
    .name = "QVCircleMosaicMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Dot mosaic",
    .help = "Round dots of one colour each on a darker ground",
    .tags = {"pixelate", "dots", "halftone", "led", "pop art"},
    .factory = makeFilter<QVCircleMosaicMTIFilter>,
    .category = QVFilterCategory::mosaic,
    .properties =
        {
            qvProperty<&Effect::factor, &Effect::setFactor>({
                .name = "factor",
                .title = "Dot distance",
                .help = "from one dot to the next",
                .minimum = 2,
                .maximum = 1080,
                .unit = QVUnit::pixels1080,
                .step = 1,
            }),
        },
};

QVCircleMosaicMTIFilter::QVCircleMosaicMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {
    QVCircleMosaicMTIFilter::setEffectValue(effectValue());
}

MTIParameters QVCircleMosaicMTIFilter::parameters() const {
    return {{"factor", float(factor_)}};
}

}  // namespace qv
