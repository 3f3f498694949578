#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionAssistFilter.h"

namespace qv {

const QVFilterClass QVFilmTransitionAssistFilterClass{
    .name = "QVFilmTransitionAssistFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .help = "One pass over one frame, a part of the film transitions",
    .inputs = QVFilterInputs::one,
    .kind = QVFilterKind::auxiliary,
};

MTIImage QVFilmTransitionAssistFilter::outputImage() {
    if (!inputImage1()) return {};
    return applyKernel({inputImage1()}, parameters());
}

}  // namespace qv
