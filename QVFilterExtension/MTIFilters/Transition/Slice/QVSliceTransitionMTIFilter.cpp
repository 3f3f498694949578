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
    .help = "Strips of the incoming clip slide over the outgoing one, one after the other",
    .factory = makeFilter<QVSliceTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::count, &Transition::setCount>("count", 1, 24, "number of strips"),
            qvProperty<&Transition::slope, &Transition::setSlope>(
                "slope", -2, 2, "lean of the cuts, pixels sideways for each pixel along them"),
            qvProperty<&Transition::type, &Transition::setType>("type", 0, kTypes.size() - 1,
                                                                "where the strips come from", kTypes),
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
