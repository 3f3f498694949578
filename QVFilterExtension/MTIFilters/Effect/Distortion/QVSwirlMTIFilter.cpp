#include "QVFilterExtension/MTIFilters/Effect/Distortion/QVSwirlMTIFilter.h"

namespace qv {

namespace {
using Effect = QVSwirlMTIFilter;
}  // namespace

const QVFilterClass QVSwirlMTIFilterClass{
    .name = "QVSwirlMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "A whirl around the middle of the frame",
    .factory = makeFilter<QVSwirlMTIFilter>,
    .category = QVFilterCategory::distortion,
    .properties =
        {
            qvProperty<&Effect::angle, &Effect::setAngle>("angle", -2, 2,
                                                          "how far the very middle is turned, turns"),
        },
};

QVSwirlMTIFilter::QVSwirlMTIFilter(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {
    QVSwirlMTIFilter::setEffectValue(effectValue());
}

void QVSwirlMTIFilter::setEffectValue(float value) {
    QVEffectMTIFilter::setEffectValue(value);
    angle_ = 0.3 * double(value);
}

MTIParameters QVSwirlMTIFilter::parameters() const {
    return {{"angle", float(angle_)}};
}

}  // namespace qv
