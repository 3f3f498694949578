#include "Host/Transition/TransitionTimeline.h"

#include <algorithm>

#include "Host/Clips/Timeline.h"
#include "Host/CommandLine/Failure.h"

namespace qv::host {

namespace {

double positive(const std::string& option, const std::string& text) {
    const double seconds = parseTime(option, text);
    if (seconds <= 0) fail(ExitCode::usage, "{} is above 0, not '{}'", option, text);
    return seconds;
}

/// Without a wish as long as a photo lies on a timeline, but never shorter than the transition.
double lengthOfStills(const TransitionOptions& options, double transitionSeconds) {
    if (options.stillSeconds.empty()) return std::max(kPhotoSeconds, transitionSeconds);
    return positive("--still-seconds", options.stillSeconds);
}

void checkLength(const Footage& footage, double transitionSeconds) {
    if (footage.seconds() >= transitionSeconds - kTimeTolerance) return;
    fail(ExitCode::input, "'{}' lasts {:.3f} s, which is shorter than the transition of {:.3f} s",
         footage.path(), footage.seconds(), transitionSeconds);
}

FrameShape shapeOf(const TransitionOptions& options, const Footage& first) {
    if (options.size.empty()) return uprightShape(first.video());
    const PixelSize size = parseSize(options.size);
    return {{double(size.width), double(size.height)}, 1};
}

}  // namespace

TransitionTimeline::TransitionTimeline(const TransitionOptions& options)
    : seconds_(positive("--duration", options.duration)),
      stillSeconds_(lengthOfStills(options, seconds_)),
      first_(options.inputs[0], stillSeconds_, options.encoding.readerOptions(options.inputs[0])),
      second_(options.inputs[1], stillSeconds_, options.encoding.readerOptions(options.inputs[1])),
      fit_(options.fit),
      frame_(shapeOf(options, first_)),
      filter_(parseEffect(options.transition, ClassUse::transition),
              CMTimeRangeMakeWithSeconds(start(), seconds_)) {
    checkLength(first_, seconds_);
    checkLength(second_, seconds_);
}

void TransitionTimeline::renderStills(MTIContext& context) {
    first_.render(context, frame_, fit_);
    second_.render(context, frame_, fit_);
}

}  // namespace qv::host
