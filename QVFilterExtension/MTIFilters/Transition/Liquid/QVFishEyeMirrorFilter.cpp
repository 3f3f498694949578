#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVFishEyeMirrorFilter.h"

namespace qv {

namespace {
using Transition = QVFishEyeMirrorFilter;
}  // namespace

const QVFilterClass QVFishEyeMirrorFilterClass{
    .name = "QVFishEyeMirrorFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .help = "Copies of the picture, every other one mirrored, that move sideways",
    .factory = makeFilter<QVFishEyeMirrorFilter>,
    .inputs = QVFilterInputs::one,
    .properties =
        {
            qvProperty<&Transition::mirrorNumber, &Transition::setMirrorNumber>(
                "mirrorNumber", 0, 100, "copies along each side of the frame"),
            qvProperty<&Transition::moveDistance, &Transition::setMoveDistance>(
                "moveDistance", -1000, 1000, "how far the frame moves to the right, widths of a copy"),
        },
    .kind = QVFilterKind::auxiliary,
};

MTIParameters QVFishEyeMirrorFilter::parameters() const {
    return {{"mirrorNum", mirrorNumber_}, {"distance", moveDistance_}};
}

}  // namespace qv
