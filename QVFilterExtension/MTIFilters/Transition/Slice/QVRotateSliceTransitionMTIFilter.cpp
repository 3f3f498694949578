#include "QVFilterExtension/MTIFilters/Transition/Slice/QVRotateSliceTransitionMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Transition = QVRotateSliceTransitionMTIFilter;
constexpr std::array<std::string_view, 5> kTypes = {"left and right halves", "upper and lower halves",
                                                    "quarters", "rings from the middle",
                                                    "rings from the rim"};
}  // namespace

const QVFilterClass QVRotateSliceTransitionMTIFilterClass{
    .name = "QVRotateSliceTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Turning pieces",
    .help = "Pieces of the outgoing clip turn away and leave the incoming one",
    .tags = {"slice", "rotate", "spin", "wipe"},
    .factory = makeFilter<QVRotateSliceTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::type, &Transition::setType>({
                .name = "type",
                .title = "Pieces",
                .help = "what the pieces are",
                .variants = kTypes,
            }),
        },
};

MTIParameters QVRotateSliceTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = QVTransitionMTIFilter::parameters();
    uniforms.set("type", type_);
    return uniforms;
}

}  // namespace qv
