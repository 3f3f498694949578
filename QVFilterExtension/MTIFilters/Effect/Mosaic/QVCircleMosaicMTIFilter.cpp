#include "QVFilterExtension/MTIFilters/Effect/Mosaic/QVCircleMosaicMTIFilter.h"

namespace qv {

namespace {
using Effect = QVCircleMosaicMTIFilter;
}  // namespace

const QVFilterClass QVCircleMosaicMTIFilterClass{
    .name = "QVCircleMosaicMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Round dots of one colour each on a darker ground",
    .factory = makeFilter<QVCircleMosaicMTIFilter>,
    .category = QVFilterCategory::mosaic,
    .properties =
        {
            qvProperty<&Effect::factor, &Effect::setFactor>(
                "factor", 2, 1080, "distance of two dots, 1/1080 of the frame's shorter side"),
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
