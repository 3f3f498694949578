#include "QVFilterExtension/MTIFilters/Effect/Mirror/QVFullMirrorMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Effect = QVFullMirrorMTIFilter;
constexpr std::array kFactors = {1.0, 2.0, 3.0};
}  // namespace

const QVFilterClass QVFullMirrorMTIFilterClass{
    .name = "QVFullMirrorMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "The whole frame, small, among its mirror images",
    .factory = makeFilter<QVFullMirrorMTIFilter>,
    .category = QVFilterCategory::mirror,
    .levelCount = int(kFactors.size()),
    .properties =
        {
            qvProperty<&Effect::factor, &Effect::setFactor>("factor", 1, 3,
                                                            "number of reflections along each side, 1 to 3"),
        },
};

QVFullMirrorMTIFilter::QVFullMirrorMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {
    QVFullMirrorMTIFilter::setLevel(level());
}

void QVFullMirrorMTIFilter::setLevel(std::int64_t level) {
    if (!isValidLevel(level, kFactors.size())) return;
    QVEffectMTIFilter::setLevel(level);
    factor_ = kFactors[std::size_t(level)];
}

MTIParameters QVFullMirrorMTIFilter::parameters() const {
    return {{"factor", float(factor_)}};
}

}  // namespace qv
