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
    const auto turn = [&](int taps) {
        return MTIVector{float(std::cos(taps * angle)), float(std::sin(taps * angle))};
    };
    return {{"angle", float(angle)},
            {"turn1", turn(1)},
            {"turn2", turn(2)},
            {"turn3", turn(3)},
            {"turn4", turn(4)}};
}

}  // namespace qv
