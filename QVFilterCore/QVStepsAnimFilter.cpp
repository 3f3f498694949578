#include "QVFilterCore/QVStepsAnimFilter.h"

#include "QVFilterCore/QVClipTime.h"
#include "QVFilterCore/QV_CubicBezier.h"

namespace qv {

namespace {
using Animation = QVStepsAnimFilter;
}  // namespace

const QVFilterClass QVStepsAnimFilterClass{
    .name = "QVStepsAnimFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Animation in steps",
    .help = "An animation in eased steps",
    .factory = makeFilter<QVStepsAnimFilter>,
    .category = QVFilterCategory::animation,
    .isPhotoTimeConst = false,
    .properties =
        {
            qvProperty<&Animation::startTime, &Animation::setStartTime>({
                .name = "startTime",
                .help = "start of the animation",
                .minimum = -kUnlimited,
                .maximum = kUnlimited,
                .unit = QVUnit::seconds,
                .driver = QVPropertyDriver::host,
            }),
            qvProperty<&Animation::endTime, &Animation::setEndTime>({
                .name = "endTime",
                .help = "end of the animation",
                .minimum = -kUnlimited,
                .maximum = kUnlimited,
                .unit = QVUnit::seconds,
                .driver = QVPropertyDriver::host,
            }),
        },
};

MTIVector QVStepsAnimFilter::poseVector(std::size_t index) const {
    const StepPose pose = index < poses_.size() ? poses_[index] : StepPose();
    const double strength = 0.5 + double(effectValue());
    return {float(strength * pose.x), float(strength * pose.y), float(1 + strength * (pose.scale - 1)),
            float(strength * pose.angle)};
}

MTIParameters QVStepsAnimFilter::parameters() const {
    const double progress = clipProgress(iTime(), startTime_, endTime_);
    // The step that `progress` is in; the last also has its end.
    std::size_t step = 0;
    while (step + 1 < steps_.size() && progress >= steps_[step].end) ++step;

    double eased = 0, motion = 0;
    if (!steps_.empty()) {
        const StepParaValue& para = steps_[step];
        const double start = step > 0 ? steps_[step - 1].end : 0.0;
        const auto easedAt = [&](double fraction) {
            return QV_CubicBezier(fraction, para.x1, para.y1, para.x2, para.y2);
        };
        const double fraction = clipProgress(progress, start, para.end);
        const double span = (endTime_ - startTime_) * (para.end - start);
        const double halfShutter = span > 0 ? 0.5 * kShutterSeconds / span : 0.0;
        eased = easedAt(fraction);
        motion = easedAt(fraction + halfShutter) - easedAt(fraction - halfShutter);
    }
    MTIParameters all = QVEffectMTIFilter::parameters();
    all.set("progress", float(progress));
    all.set("step", std::int32_t(step));
    all.set("stepProgress", float(eased));
    all.set("stepMotion", float(motion));
    if (!poses_.empty()) {
        all.set("poseFrom", poseVector(step));
        all.set("poseTo", poseVector(step + 1));
    }
    return all;
}

}  // namespace qv
