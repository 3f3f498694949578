#include "QVFilterExtension/MTIFilters/Effect/Mosaic/QVTriangleMosaicMTIFilter.h"

namespace qv {

namespace {
using Effect = QVTriangleMosaicMTIFilter;
}  // namespace

const QVFilterClass QVTriangleMosaicMTIFilterClass{
    .name = "QVTriangleMosaicMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Equilateral triangles of one colour",
    .factory = makeFilter<QVTriangleMosaicMTIFilter>,
    .category = QVFilterCategory::mosaic,
    .properties =
        {
            qvProperty<&Effect::factor, &Effect::setFactor>(
                "factor", 3, 1080, "height of a triangle, 1/1080 of the frame's shorter side"),
        },
};

QVTriangleMosaicMTIFilter::QVTriangleMosaicMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {
    QVTriangleMosaicMTIFilter::setEffectValue(effectValue());
}

MTIParameters QVTriangleMosaicMTIFilter::parameters() const {
    return {{"factor", float(factor_)}};
}

}  // namespace qv
