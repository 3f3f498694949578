#include "QVFilterExtension/MTIFilters/Transition/Paper/QVPaperDivisionFilter.h"

namespace qv {

namespace {
using Filter = QVPaperDivisionFilter;
}  // namespace

const QVFilterClass QVPaperDivisionFilterClass{
    .name = "QVPaperDivisionFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .help = "Paper torn in two along a line, a clip on each piece",
    .factory = makeFilter<QVPaperDivisionFilter>,
    .properties =
        {
            qvProperty<&Filter::pointTopVector, &Filter::setPointTopVector>(
                "pointTopVector", "where the tear begins, fractions of the frame from its top left"),
            qvProperty<&Filter::pointBotVector, &Filter::setPointBotVector>(
                "pointBotVector", "where the tear ends, fractions of the frame from its top left"),
        },
    .kind = QVFilterKind::auxiliary,
};

MTIParameters QVPaperDivisionFilter::parameters() const {
    return {{"topPoint", pointTopVector_}, {"botPoint", pointBotVector_}};
}

}  // namespace qv
