#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionMotionBlurFilter.h"

namespace qv {

const QVFilterClass QVFilmTransitionMotionBlurFilterClass{
    .name = "QVFilmTransitionMotionBlurFilter",
    .superclass = &QVFilmTransitionAssistFilterClass,
    .help = "A vertical blur, as film runs through the gate",
    .factory = makeFilter<QVFilmTransitionMotionBlurFilter>,
    .properties = {qvProperty<&QVFilmTransitionMotionBlurFilter::blurRadius,
                              &QVFilmTransitionMotionBlurFilter::setBlurRadius>(
        "blurRadius", 0, 1080, "reach upwards and downwards, 1/1080 of the frame's shorter side")},
};

}  // namespace qv
