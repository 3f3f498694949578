#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionAssistFilter.h"

namespace qv {

const QVFilterClass QVFilmTransitionAssistFilterClass{
    .name = "QVFilmTransitionAssistFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Part of a film transition",
    .help = "One pass over one frame, a part of the film transitions",
    .inputs = {{kInputImage1}},
    .kind = QVFilterKind::auxiliary,
};

MTIImage QVFilmTransitionAssistFilter::outputImage() {
    if (!inputImage1()) return {};
    return applyKernel({inputImage1()}, parameters());
}

}  // namespace qv
