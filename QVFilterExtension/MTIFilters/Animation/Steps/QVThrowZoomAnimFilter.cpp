#include "QVFilterExtension/MTIFilters/Animation/Steps/QVThrowZoomAnimFilter.h"

namespace qv {

const QVFilterClass QVThrowZoomAnimFilterClass{
    .name = "QVThrowZoomAnimFilter",
    .superclass = &QVStepsAnimFilterClass,
    .title = "Throw, then zoom",
    .help = "Thrown in from outside, bounces into place, then zooms in",
    .tags = {"bounce", "entrance", "exit"},
    .factory = makeFilter<QVThrowZoomAnimFilter>,
};

QVThrowZoomAnimFilter::QVThrowZoomAnimFilter(const QVFilterClass& filterClass)
    : QVStepsAnimFilter(filterClass) {
    setStepParas(
        {StepPara(0.06666666666666667, 0, 0, 0.2, 0.8), StepPara(0.13333333333333333, 0.3, 0.1, 0.7, 0.9),
         StepPara(0.2222222222222222, 0.3, 0.1, 0.7, 0.9), StepPara(0.2777777777777778, 0.3, 0.1, 0.7, 0.9),
         StepPara(0.3333333333333333, 0.3, 0.1, 0.7, 0.9), StepPara(0.5, 0.3, 0.13, 0.3, 1.0),
         StepPara(0.5555555555555556, 0, 0, 1, 1), StepPara(1.0, 1, 0, 1, 1)});
    // Larger than the frame while it bounces, which keeps its border outside.
    setStepPoses({{.x = -1.2, .y = 0.5, .scale = 1.5, .angle = -0.09},
                  {.x = 0.08, .y = -0.05, .scale = 1.2, .angle = 0.016},
                  {.x = -0.05, .y = 0.035, .scale = 1.13, .angle = -0.01},
                  {.x = 0.032, .y = -0.02, .scale = 1.08, .angle = 0.006},
                  {.x = -0.018, .y = 0.01, .scale = 1.05, .angle = -0.003},
                  {.x = 0.008, .y = -0.004, .scale = 1.02, .angle = 0.0015},
                  {},
                  {},
                  {.scale = 2.5}});
}

}  // namespace qv
