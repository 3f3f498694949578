#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"

#include "QVFilterCore/QVClipTime.h"

namespace qv {

namespace {
using Effect = QVProgressBasedEffectMTIFilter;
}  // namespace

const QVFilterClass QVProgressBasedEffectMTIFilterClass{
    .name = "QVProgressBasedEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "An effect that knows where its clip begins and ends",
    .factory = makeFilter<QVProgressBasedEffectMTIFilter>,
    .category = QVFilterCategory::animation,
    .isPhotoTimeConst = false,
    .properties =
        {
            qvProperty<&Effect::startTime, &Effect::setStartTime>("startTime", -1e9, 1e9,
                                                                  "start of the clip, seconds"),
            qvProperty<&Effect::endTime, &Effect::setEndTime>("endTime", -1e9, 1e9,
                                                              "end of the clip, seconds"),
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
