#include "QVFilterExtension/MTIFilters/Animation/QVZoomThrowAnimFilter.h"

namespace qv {

const QVFilterClass QVZoomThrowAnimFilterClass{
    .name = "QVZoomThrowAnimFilter",
    .superclass = &QVStepsAnimFilterClass,
    .help = "Zoomed in, bounces back to its size, then is thrown out of the frame",
    .factory = makeFilter<QVZoomThrowAnimFilter>,
};

QVZoomThrowAnimFilter::QVZoomThrowAnimFilter(const QVFilterClass& filterClass)
    : QVStepsAnimFilter(filterClass) {
    setStepParas(
        {StepPara(0.07777777777777778, 0.6, 0, 0.5, 1), StepPara(0.15555555555555556, 0.5, 0, 0.5, 1),
         StepPara(0.24444444444444444, 0.5, 0, 0.5, 1), StepPara(0.32222222222222224, 0.5, 0, 0.5, 1),
         StepPara(0.4111111111111111, 0.5, 0, 0.5, 1), StepPara(0.5, 0.5, 0, 0.5, 1),
         StepPara(0.5555555555555556, 0, 0, 1, 1), StepPara(1.0, 1, 0, 1, 1)});
    setStepPoses({{.scale = 2.6, .angle = -0.1},
                  {.scale = 1.03, .angle = 0.03},
                  {.scale = 1.36, .angle = -0.05},
                  {.scale = 1.02, .angle = 0.015},
                  {.scale = 1.15, .angle = -0.02},
                  {.scale = 1.01, .angle = 0.005},
                  {},
                  {},
                  {.x = 1.2, .y = -0.5, .scale = 1.1, .angle = 0.5}});
}

}  // namespace qv
