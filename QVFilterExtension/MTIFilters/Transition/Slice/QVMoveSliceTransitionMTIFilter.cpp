#include "QVFilterExtension/MTIFilters/Transition/Slice/QVMoveSliceTransitionMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Transition = QVMoveSliceTransitionMTIFilter;
constexpr std::array<std::string_view, 5> kTypes = {"columns", "rows", "columns in turn", "rows in turn",
                                                    "diagonal"};
}  // namespace

const QVFilterClass QVMoveSliceTransitionMTIFilterClass{
    .name = "QVMoveSliceTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .help = "Strips that move opposite ways push one clip out and pull the other in",
    .factory = makeFilter<QVMoveSliceTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::count, &Transition::setCount>("count", 1, 24, "number of strips"),
            qvProperty<&Transition::type, &Transition::setType>(
                "type", 0, kTypes.size() - 1, "how the strips lie and in which order they move", kTypes),
        },
};

MTIParameters QVMoveSliceTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = timingParameters(newProgress());
    uniforms.set("count", count_);
    uniforms.set("type", type_);
    return uniforms;
}

}  // namespace qv
