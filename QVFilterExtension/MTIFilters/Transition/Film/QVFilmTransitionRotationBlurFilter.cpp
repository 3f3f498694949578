#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionRotationBlurFilter.h"

#include <cmath>

namespace qv {

const QVFilterClass QVFilmTransitionRotationBlurFilterClass{
    .name = "QVFilmTransitionRotationBlurFilter",
    .superclass = &QVFilmTransitionAssistFilterClass,
    .title = "Turning film blur",
    .help = "A blur around the middle",
    .tags = {"spin blur", "radial blur", "motion blur"},
    .factory = makeFilter<QVFilmTransitionRotationBlurFilter>,
    .properties = {qvProperty<&QVFilmTransitionRotationBlurFilter::blurFilterValue,
                              &QVFilmTransitionRotationBlurFilter::setBlurFilterValue>({
        .name = "blurFilterValue",
        .title = "Swept angle",
        .help = "while the shutter is open",
        .minimum = -1,
        .unit = QVUnit::radians,
        .step = 0.01,
    })},
};

MTIParameters QVFilmTransitionRotationBlurFilter::parameters() const {
    constexpr double kTaps = 9;
    const double angle = blurFilterValue_ / kTaps;
    return {{"angle", float(angle)}, {"turn", MTIVector{float(std::cos(angle)), float(std::sin(angle))}}};
}

}  // namespace qv
