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
    .title = "Opposing strips",
    .help = "Strips that move opposite ways push one clip out and pull the other in",
    .tags = {"slice", "slide", "push", "shutters"},
    .factory = makeFilter<QVMoveSliceTransitionMTIFilter>,
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
            qvProperty<&Transition::type, &Transition::setType>({
                .name = "type",
                .title = "Strips",
                .help = "how the strips lie and in which order they move",
                .variants = kTypes,
            }),
        },
};

MTIParameters QVMoveSliceTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = timingParameters(newProgress());
    uniforms.set("count", count_);
    uniforms.set("type", type_);
    return uniforms;
}

}  // namespace qv
