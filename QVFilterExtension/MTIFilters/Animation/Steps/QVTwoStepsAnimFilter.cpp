#include "QVFilterExtension/MTIFilters/Animation/Steps/QVTwoStepsAnimFilter.h"

namespace qv {

const QVFilterClass QVTwoStepsAnimFilterClass{
    .name = "QVTwoStepsAnimFilter",
    .superclass = &QVStepsAnimFilterClass,
    .help = "Settles from a close view, and leans in again at the end",
    .factory = makeFilter<QVTwoStepsAnimFilter>,
};

QVTwoStepsAnimFilter::QVTwoStepsAnimFilter(const QVFilterClass& filterClass)
    : QVStepsAnimFilter(filterClass) {
    setStepParas({StepPara(0.5, 0, 0, 0, 1), StepPara(1.0, 0, 0, 1, 0)});
}

}  // namespace qv
