#include "QVFilterExtension/MTIFilters/Effect/Distortion/QVSwirlMTIFilter.h"

namespace qv {

namespace {
using Effect = QVSwirlMTIFilter;
}  // namespace

const QVFilterClass QVSwirlMTIFilterClass{
    .name = "QVSwirlMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Swirl",
    .help = "A whirlpool around the middle of the frame",
    .tags = {"twirl", "vortex", "whirl", "spiral"},
    .factory = makeFilter<QVSwirlMTIFilter>,
    .category = QVFilterCategory::distortion,
    .properties =
        {
            qvProperty<&Effect::angle, &Effect::setAngle>({
                .name = "angle",
                .title = "Turn",
                .help = "how far the picture is turned a third of the way from the middle to the rim",
                .minimum = -2,
                .maximum = 2,
                .unit = QVUnit::turns,
                .step = 0.01,
            }),
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
