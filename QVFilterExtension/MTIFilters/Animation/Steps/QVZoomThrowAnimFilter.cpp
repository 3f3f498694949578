#include "QVFilterExtension/MTIFilters/Animation/Steps/QVZoomThrowAnimFilter.h"

namespace qv {

const QVFilterClass QVZoomThrowAnimFilterClass{
    .name = "QVZoomThrowAnimFilter",
    .superclass = &QVStepsAnimFilterClass,
    .title = "Zoom, then throw",
    .help = "Bounces in and out until it has its size, then is thrown past the viewer",
    .tags = {"bounce", "entrance", "exit"},
    .factory = makeFilter<QVZoomThrowAnimFilter>,
};

QVZoomThrowAnimFilter::QVZoomThrowAnimFilter(const QVFilterClass& filterClass)
    : QVStepsAnimFilter(filterClass) {
    setStepParas(
        {StepPara(0.07777777777777778, 0.6, 0, 0.5, 1), StepPara(0.15555555555555556, 0.5, 0, 0.5, 1),
         StepPara(0.24444444444444444, 0.5, 0, 0.5, 1), StepPara(0.32222222222222224, 0.5, 0, 0.5, 1),
         StepPara(0.4111111111111111, 0.5, 0, 0.5, 1), StepPara(0.5, 0.5, 0, 0.5, 1),
         StepPara(0.5555555555555556, 0, 0, 1, 1), StepPara(1.0, 1, 0, 1, 1)});
    setStepPoses({{.scale = 2.6, .angle = -0.02},
                  {.scale = 1.04, .angle = 0.004},
                  {.scale = 1.4, .angle = -0.008},
                  {.scale = 1.02, .angle = 0.002},
                  {.scale = 1.16, .angle = -0.003},
                  {.scale = 1.01},
                  {},
                  {},
                  {.x = 1.0, .y = -0.45, .scale = 2.0, .angle = 0.08}});
}

}  // namespace qv
