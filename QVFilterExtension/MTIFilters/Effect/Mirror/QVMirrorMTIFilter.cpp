#include "QVFilterExtension/MTIFilters/Effect/Mirror/QVMirrorMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Effect = QVMirrorMTIFilter;
constexpr std::array kFactors = {2.0, 4.0, 5.0};
}  // namespace

const QVFilterClass QVMirrorMTIFilterClass{
    .name = "QVMirrorMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "Part of the frame and its reflections: halves, quarters or five strips",
    .factory = makeFilter<QVMirrorMTIFilter>,
    .category = QVFilterCategory::mirror,
    .levelCount = int(kFactors.size()),
    .properties =
        {
            qvProperty<&Effect::factor, &Effect::setFactor>("factor", 2, 5, "number of parts: 2, 4 or 5"),
        },
};

QVMirrorMTIFilter::QVMirrorMTIFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVMirrorMTIFilter::setLevel(level());
}

void QVMirrorMTIFilter::setLevel(std::int64_t level) {
    if (!isValidLevel(level, kFactors.size())) return;
    QVEffectMTIFilter::setLevel(level);
    factor_ = kFactors[std::size_t(level)];
}

MTIParameters QVMirrorMTIFilter::parameters() const {
    return {{"factor", float(factor_)}};
}

}  // namespace qv
