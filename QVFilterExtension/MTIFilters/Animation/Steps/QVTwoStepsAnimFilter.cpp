#include "QVFilterExtension/MTIFilters/Animation/Steps/QVTwoStepsAnimFilter.h"

namespace qv {

const QVFilterClass QVTwoStepsAnimFilterClass{
    .name = "QVTwoStepsAnimFilter",
    .superclass = &QVStepsAnimFilterClass,
    .title = "Settle and lean in",
    .help = "Settles from a close view, and leans in again at the end",
    .tags = {"zoom", "entrance", "exit"},
    .factory = makeFilter<QVTwoStepsAnimFilter>,
};

QVTwoStepsAnimFilter::QVTwoStepsAnimFilter(const QVFilterClass& filterClass)
    : QVStepsAnimFilter(filterClass) {
    setStepParas({StepPara(0.5, 0, 0, 0, 1), StepPara(1.0, 0, 0, 1, 0)});
}

}  // namespace qv
