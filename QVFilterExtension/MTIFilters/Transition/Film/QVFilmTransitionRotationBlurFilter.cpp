#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionRotationBlurFilter.h"

namespace qv {

const QVFilterClass QVFilmTransitionRotationBlurFilterClass{
    .name = "QVFilmTransitionRotationBlurFilter",
    .superclass = &QVFilmTransitionAssistFilterClass,
    .help = "A blur around the middle",
    .factory = makeFilter<QVFilmTransitionRotationBlurFilter>,
    .properties = {qvProperty<&QVFilmTransitionRotationBlurFilter::blurFilterValue,
                              &QVFilmTransitionRotationBlurFilter::setBlurFilterValue>(
        "blurFilterValue", -1, 1, "angle swept while the shutter is open, radians")},
};

}  // namespace qv
