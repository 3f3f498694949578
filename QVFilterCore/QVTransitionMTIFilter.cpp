#include "QVFilterCore/QVTransitionMTIFilter.h"

#include <cmath>

namespace qv {

namespace {
using Transition = QVTransitionMTIFilter;
}  // namespace

const QVFilterClass QVTransitionMTIFilterClass{
    .name = "QVTransitionMTIFilter",
    .superclass = &QVMTIFilterClass,
    .title = "Transition",
    .help = "A transition from an outgoing clip to an incoming one",
    .factory = makeFilter<QVTransitionMTIFilter>,
    .category = QVFilterCategory::transition,
    .inputs = {{kInputImage1, kInputImage2}},
    .properties =
        {
            qvProperty<&Transition::progress, &Transition::setProgress>({
                .name = "progress",
                .help = "position in the transition",
                .unit = QVUnit::fraction,
                .driver = QVPropertyDriver::host,
            }),
            qvProperty<&Transition::timeRange, &Transition::setTimeRange>({
                .name = "timeRange",
                .help = "start and duration on the timeline",
                .driver = QVPropertyDriver::host,
            }),
        },
    .kind = QVFilterKind::transition,
};

float QVTransitionMTIFilter::ratio() const {
    const CGSize size = inputImage1_.size();
    return size.height > 0 ? float(size.width / size.height) : 1.0f;
}

MTIParameters QVTransitionMTIFilter::timingParameters(float progress) const {
    return {{"progress", progress},
            {"start", float(CMTimeGetSeconds(timeRange_.start))},
            {"duration", float(CMTimeGetSeconds(timeRange_.duration))}};
}

MTIParameters QVTransitionMTIFilter::parameters() const {
    MTIParameters parameters = timingParameters(newProgress());
    parameters.set("ratio", ratio());
    return parameters;
}

MTIImage QVTransitionMTIFilter::outputImage() {
    if (!inputImage1_ || !inputImage2_) return {};
    return applyKernel({inputImage1_, inputImage2_}, parameters());
}

namespace {

/// Ease in and out by a power: half the way by 2^(n−1)·pⁿ, the other half mirrored.
float easeInOutPower(float progress, int power) {
    const double p = progress;
    const double half = p < 0.5 ? p : 1 - p;
    const double eased = std::pow(2.0, power - 1) * std::pow(half, power);
    return float(p < 0.5 ? eased : 1 - eased);
}

}  // namespace

float QVTransitionMTIFilter::easeInOutCubic(float progress) {
    return easeInOutPower(progress, 3);
}
float QVTransitionMTIFilter::easeInOutHeavy(float progress) {
    return easeInOutPower(progress, 5);
}

}  // namespace qv
