#include "QVFilterExtension/MTIFilters/Transition/Paper/QVPaperDivisionFilter.h"

namespace qv {

namespace {
using Filter = QVPaperDivisionFilter;
}  // namespace

const QVFilterClass QVPaperDivisionFilterClass{
    .name = "QVPaperDivisionFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Paper torn in two",
    .help = "Paper torn in two along a line, a clip on each piece",
    .tags = {"rip", "tear", "split", "collage"},
    .factory = makeFilter<QVPaperDivisionFilter>,
    .properties =
        {
            qvProperty<&Filter::pointTopVector, &Filter::setPointTopVector>({
                .name = "pointTopVector",
                .title = "Start of the tear",
                .help = "from the top left of the frame",
                .minimum = -1,
                .maximum = 2,
                .unit = QVUnit::frameSides,
            }),
            qvProperty<&Filter::pointBotVector, &Filter::setPointBotVector>({
                .name = "pointBotVector",
                .title = "End of the tear",
                .help = "from the top left of the frame",
                .minimum = -1,
                .maximum = 2,
                .unit = QVUnit::frameSides,
            }),
        },
    .kind = QVFilterKind::auxiliary,
};

MTIParameters QVPaperDivisionFilter::parameters() const {
    return {{"topPoint", pointTopVector_}, {"botPoint", pointBotVector_}};
}

}  // namespace qv
