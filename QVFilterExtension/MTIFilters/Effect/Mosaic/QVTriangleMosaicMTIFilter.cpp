#include "QVFilterExtension/MTIFilters/Effect/Mosaic/QVTriangleMosaicMTIFilter.h"

namespace qv {

namespace {
using Effect = QVTriangleMosaicMTIFilter;
}  // namespace

const QVFilterClass QVTriangleMosaicMTIFilterClass{
    .name = "QVTriangleMosaicMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Triangle mosaic",
    .help = "Equilateral triangles of one colour",
    .tags = {"pixelate", "low poly", "facets", "geometric"},
    .factory = makeFilter<QVTriangleMosaicMTIFilter>,
    .category = QVFilterCategory::mosaic,
    .properties =
        {
            qvProperty<&Effect::factor, &Effect::setFactor>({
                .name = "factor",
                .title = "Triangle height",
                .help = "height of a triangle",
                .minimum = 3,
                .maximum = 1080,
                .unit = QVUnit::pixels1080,
                .step = 1,
            }),
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
