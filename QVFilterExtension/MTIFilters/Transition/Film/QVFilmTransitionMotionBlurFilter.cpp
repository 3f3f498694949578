#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionMotionBlurFilter.h"

namespace qv {

const QVFilterClass QVFilmTransitionMotionBlurFilterClass{
    .name = "QVFilmTransitionMotionBlurFilter",
    .superclass = &QVFilmTransitionAssistFilterClass,
    .title = "Running film blur",
    .help = "A vertical blur, as film runs through the gate",
    .tags = {"vertical blur", "motion blur", "smear"},
    .factory = makeFilter<QVFilmTransitionMotionBlurFilter>,
    .properties = {qvProperty<&QVFilmTransitionMotionBlurFilter::blurRadius,
                              &QVFilmTransitionMotionBlurFilter::setBlurRadius>({
        .name = "blurRadius",
        .title = "Reach",
        .help = "upwards and downwards",
        .maximum = 1080,
        .unit = QVUnit::pixels1080,
        .step = 1,
    })},
};

}  // namespace qv
