#include "QVFilterExtension/MTIFilters/Transition/Slice/QVSliceTransitionMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Transition = QVSliceTransitionMTIFilter;
constexpr std::array<std::string_view, 5> kTypes = {
    "alternating columns", "falling columns", "alternating rows", "sliding rows", "columns from the middle"};
}  // namespace

const QVFilterClass QVSliceTransitionMTIFilterClass{
    .name = "QVSliceTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Sliding strips",
    .help = "Strips of the incoming clip slide over the outgoing one, one after the other",
    .tags = {"slice", "wipe", "blinds", "push"},
    .factory = makeFilter<QVSliceTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::count, &Transition::setCount>({
                .name = "count",
                .title = "Number of strips",
                .help = "number of strips",
                .minimum = 1,
                .maximum = 24,
                .unit = QVUnit::count,
            }),
            qvProperty<&Transition::slope, &Transition::setSlope>({
                .name = "slope",
                .title = "Slant",
                .help = "of the cuts: sideways for each step along them",
                .minimum = -2,
                .maximum = 2,
                .unit = QVUnit::factor,
                .step = 0.05,
            }),
            qvProperty<&Transition::type, &Transition::setType>({
                .name = "type",
                .title = "Strips",
                .help = "where the strips come from",
                .variants = kTypes,
            }),
        },
};

MTIParameters QVSliceTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = timingParameters(newProgress());
    uniforms.set("count", count_);
    uniforms.set("slope", float(slope_));
    uniforms.set("type", type_);
    return uniforms;
}

}  // namespace qv
