#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

#include <algorithm>

#include "QVFilterCore/QVClipTime.h"

namespace qv {

namespace {
using Effect = QVPeriodicEffectMTIFilter;
}  // namespace

const QVFilterClass QVPeriodicEffectMTIFilterClass{
    .name = "QVPeriodicEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Beat effect",
    .help = "An effect that beats and leaves the picture as it is in between",
    .factory = makeFilter<QVPeriodicEffectMTIFilter>,
    .category = QVFilterCategory::animation,
    .isPhotoTimeConst = false,
    .properties =
        {
            qvProperty<&Effect::period, &Effect::setPeriod>({
                .name = "period",
                .title = "Beat",
                .help = "time from one beat to the next",
                .minimum = 0.05,
                .maximum = 60,
                .unit = QVUnit::seconds,
                .step = 0.05,
            }),
        },
};

bool QVPeriodicEffectMTIFilter::isEffectWithTime(double seconds) const {
    const QVTimeCycle beat = timeCycleAt(seconds, period_);
    return beat.isValid && beat.part < kActiveFraction;
}

double QVPeriodicEffectMTIFilter::pulse(double progress) {
    if (!(progress > 0 && progress < 1)) return 0;
    if (progress < kAttackFraction) {
        const double missing = 1 - progress / kAttackFraction;
        return 1 - missing * missing;
    }
    const double left = (1 - progress) / (1 - kAttackFraction);
    return left * left * left * (4 - 3 * left);
}

MTIParameters QVPeriodicEffectMTIFilter::parameters() const {
    MTIParameters all = QVEffectMTIFilter::parameters();
    const bool isOn = isEffectWithTime(iTime());
    const QVTimeCycle beat = isOn ? timeCycleAt(iTime(), period_) : QVTimeCycle();
    const double progress = beat.part / kActiveFraction;
    // The shutter opens and closes within the beat.
    const double halfShutter =
        std::min({0.5 * kShutterSeconds / (kActiveFraction * period_), progress, 1 - progress});
    all.set("progress", float(progress));
    all.set("pulse", float(pulse(progress)));
    all.set("pulseMotion", float(isOn ? pulse(progress + halfShutter) - pulse(progress - halfShutter) : 0.0));
    all.set("beat", beat.wrappedNumber());
    return all;
}

}  // namespace qv
