#include "QVFilterExtension/MTIFilters/Animation/QVThrowZoomAnimFilter.h"

namespace qv {

const QVFilterClass QVThrowZoomAnimFilterClass{
    .name = "QVThrowZoomAnimFilter",
    .superclass = &QVStepsAnimFilterClass,
    .help = "Thrown in from outside, bounces into place, then zooms in",
    .factory = makeFilter<QVThrowZoomAnimFilter>,
};

QVThrowZoomAnimFilter::QVThrowZoomAnimFilter(const QVFilterClass& filterClass)
    : QVStepsAnimFilter(filterClass) {
    setStepParas(
        {StepPara(0.06666666666666667, 0, 0, 0.2, 0.8), StepPara(0.13333333333333333, 0.3, 0.1, 0.7, 0.9),
         StepPara(0.2222222222222222, 0.3, 0.1, 0.7, 0.9), StepPara(0.2777777777777778, 0.3, 0.1, 0.7, 0.9),
         StepPara(0.3333333333333333, 0.3, 0.1, 0.7, 0.9), StepPara(0.5, 0.3, 0.13, 0.3, 1.0),
         StepPara(0.5555555555555556, 0, 0, 1, 1), StepPara(1.0, 1, 0, 1, 1)});
    // A little larger while it bounces, which keeps most of its border outside.
    setStepPoses({{.x = -1.2, .y = 0.5, .scale = 1.1, .angle = -0.5},
                  {.x = 0.09, .y = -0.05, .scale = 1.16, .angle = 0.1},
                  {.x = -0.055, .y = 0.035, .scale = 1.12, .angle = -0.06},
                  {.x = 0.035, .y = -0.02, .scale = 1.08, .angle = 0.035},
                  {.x = -0.018, .y = 0.01, .scale = 1.05, .angle = -0.018},
                  {.x = 0.008, .y = -0.004, .scale = 1.02, .angle = 0.008},
                  {},
                  {},
                  {.scale = 2.5}});
}

}  // namespace qv
