#include "QVFilterExtension/MTIFilters/Effect/Mirror/QVMirrorMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Effect = QVMirrorMTIFilter;
constexpr std::array<std::string_view, 3> kParts = {"halves", "quarters", "fifths"};
constexpr std::array kFactors = {2.0, 4.0, 5.0};
}  // namespace

const QVFilterClass QVMirrorMTIFilterClass{
    .name = "QVMirrorMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Mirror",
    .help = "Part of the frame and its reflections: halves, quarters or five strips",
    .tags = {"reflection", "symmetry", "split"},
    .factory = makeFilter<QVMirrorMTIFilter>,
    .category = QVFilterCategory::mirror,
    .properties =
        {
            qvLevels({.title = "Parts", .help = "what the frame is divided into", .variants = kParts}),
            qvProperty<&Effect::factor, &Effect::setFactor>({
                .name = "factor",
                .title = "Number of parts",
                .help = "number of parts: 2, 4 or 5",
                .minimum = 2,
                .maximum = 5,
                .unit = QVUnit::count,
                .step = 1,
            }),
        },
    .ignored = {"effectValue"},
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
