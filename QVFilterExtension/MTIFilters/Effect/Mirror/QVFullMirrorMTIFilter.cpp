#include "QVFilterExtension/MTIFilters/Effect/Mirror/QVFullMirrorMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Effect = QVFullMirrorMTIFilter;
constexpr std::array<std::string_view, 3> kReflections = {"one", "two", "three"};
constexpr std::array kFactors = {1.0, 2.0, 3.0};
}  // namespace

const QVFilterClass QVFullMirrorMTIFilterClass{
    .name = "QVFullMirrorMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Mirror tiles",
    .help = "The whole frame, small, among its mirror images",
    .tags = {"reflection", "kaleidoscope", "repeat", "grid"},
    .factory = makeFilter<QVFullMirrorMTIFilter>,
    .category = QVFilterCategory::mirror,
    .properties =
        {
            qvLevels({.title = "Reflections", .help = "how many along each side", .variants = kReflections}),
            qvProperty<&Effect::factor, &Effect::setFactor>({
                .name = "factor",
                .title = "Number of reflections",
                .help = "along each side, 1 to 3",
                .minimum = 1,
                .maximum = 3,
                .unit = QVUnit::count,
                .step = 1,
            }),
        },
    .ignored = {"effectValue"},
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
