#include "QVFilterExtension/MTIFilters/Transition/Liquid/QVFishEyeMirrorFilter.h"

namespace qv {

namespace {
using Transition = QVFishEyeMirrorFilter;
}  // namespace

const QVFilterClass QVFishEyeMirrorFilterClass{
    .name = "QVFishEyeMirrorFilter",
    .superclass = &QVLiquidTransitionMTIFilterClass,
    .title = "Sliding mirror copies",
    .help = "Copies of the picture, every other one mirrored, that move sideways",
    .tags = {"tiles", "repeat", "reflection"},
    .factory = makeFilter<QVFishEyeMirrorFilter>,
    .inputs = {{kInputImage1}},
    .properties =
        {
            qvProperty<&Transition::mirrorNumber, &Transition::setMirrorNumber>({
                .name = "mirrorNumber",
                .title = "Copies",
                .help = "copies along each side of the frame",
                .maximum = 16,
                .unit = QVUnit::count,
                .step = 0.1,
            }),
            qvProperty<&Transition::moveDistance, &Transition::setMoveDistance>({
                .name = "moveDistance",
                .title = "Distance",
                .help = "how far the frame moves to the right: of the width of a copy",
                .minimum = -10,
                .maximum = 10,
                .unit = QVUnit::factor,
                .step = 0.05,
            }),
        },
    .kind = QVFilterKind::auxiliary,
};

MTIParameters QVFishEyeMirrorFilter::parameters() const {
    return {{"mirrorNum", mirrorNumber_}, {"distance", moveDistance_}};
}

}  // namespace qv
