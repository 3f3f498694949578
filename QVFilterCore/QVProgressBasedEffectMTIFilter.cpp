#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"

#include "QVFilterCore/QVClipTime.h"

namespace qv {

namespace {
using Effect = QVProgressBasedEffectMTIFilter;
}  // namespace

const QVFilterClass QVProgressBasedEffectMTIFilterClass{
    .name = "QVProgressBasedEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Effect over a clip",
    .help = "An effect that knows where its clip begins and ends",
    .factory = makeFilter<QVProgressBasedEffectMTIFilter>,
    .category = QVFilterCategory::animation,
    .isPhotoTimeConst = false,
    .properties =
        {
            qvProperty<&Effect::startTime, &Effect::setStartTime>({
                .name = "startTime",
                .help = "start of the clip",
                .minimum = -kUnlimited,
                .maximum = kUnlimited,
                .unit = QVUnit::seconds,
                .driver = QVPropertyDriver::host,
            }),
            qvProperty<&Effect::endTime, &Effect::setEndTime>({
                .name = "endTime",
                .help = "end of the clip",
                .minimum = -kUnlimited,
                .maximum = kUnlimited,
                .unit = QVUnit::seconds,
                .driver = QVPropertyDriver::host,
            }),
        },
};

float QVProgressBasedEffectMTIFilter::progress() const {
    return float(clipProgress(iTime(), startTime_, endTime_));
}

MTIParameters QVProgressBasedEffectMTIFilter::parameters() const {
    MTIParameters all = QVEffectMTIFilter::parameters();
    all.set("progress", progress());
    return all;
}

}  // namespace qv
