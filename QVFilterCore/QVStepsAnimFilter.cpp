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
    .factory = makeFilter<QVStepsAnimFilter>,
    .category = QVFilterCategory::animation,
    .properties =
        {
            qvProperty<&Animation::startTime, &Animation::setStartTime>("startTime", -1e9, 1e9,
                                                                        "start of the animation, seconds"),
            qvProperty<&Animation::endTime, &Animation::setEndTime>("endTime", -1e9, 1e9,
                                                                    "end of the animation, seconds"),
        },
};

MTIParameters QVStepsAnimFilter::parameters() const {
    const double progress = clipProgress(iTime(), startTime_, endTime_);
    int step = 0;
    double start = 0, eased = 0;
    for (const StepParaValue& para : steps_) {
        const bool last = std::size_t(step) + 1 == steps_.size();
        if (progress < para.end || last) {
            eased =
                QV_CubicBezier(clipProgress(progress, start, para.end), para.x1, para.y1, para.x2, para.y2);
            break;
        }
        start = para.end;
        ++step;
    }
    MTIParameters all = QVEffectMTIFilter::parameters();
    all.set("progress", float(progress));
    all.set("step", std::int32_t(step));
    all.set("stepProgress", float(eased));
    return all;
}

}  // namespace qv
