#include "Host/Clips/TransitionFilter.h"

#include "Host/Clips/Timeline.h"

namespace qv::host {

TransitionFilter::TransitionFilter(EffectChoice choice, CMTimeRange range, double frameRate)
    : choice_(std::move(choice)), seconds_(CMTimeGetSeconds(range.duration)), frameRate_(frameRate) {
    filter_ = makeFilterOnClip(choice_, {});
    if (!choice_.sets("timeRange")) choice_.filterClass->property("timeRange")->set(*filter_, range);
}

MTIImage TransitionFilter::outputImage(const MTIImage& outgoing, const MTIImage& incoming, double progress) {
    if (!choice_.sets("progress")) choice_.filterClass->property("progress")->set(*filter_, progress);
    applyKeys(*filter_, choice_, progress * seconds_, frameRate_);
    FilterInputs inputs;
    inputs.first = outgoing;
    inputs.second = incoming;
    inputs.originalSize = outgoing.size();
    setInputs(*filter_, inputs);
    return outputImageOf(*filter_);
}

}  // namespace qv::host
