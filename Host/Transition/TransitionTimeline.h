#pragma once

#include "Host/Clips/Footage.h"
#include "Host/Transition/TransitionFilter.h"
#include "Host/Transition/TransitionOptions.h"

namespace qv::host {

/// Two clips or pictures that overlap by a transition: it ends where the first one ends and begins where the
/// second one does. Times are seconds since the first one's first frame.
class TransitionTimeline {
  public:
    /// Fails as usage or input; so does a clip that is shorter than the transition.
    explicit TransitionTimeline(const TransitionOptions& options);

    Footage& first() { return first_; }
    Footage& second() { return second_; }
    double start() const { return first_.seconds() - seconds_; }
    double seconds() const { return seconds_; }  ///< of the transition
    double end() const { return start() + second_.seconds(); }
    const FrameShape& frame() const { return frame_; }

    /// The frames that are shown at a time, upright, of the timeline's shape. Times must not fall.
    MTIImage firstAt(double time) { return first_.imageAt(time, frame_, fit_); }
    MTIImage secondAt(double time) { return second_.imageAt(time - start(), frame_, fit_); }
    /// Renders still pictures once and for all.
    void renderStills(MTIContext& context);

    MTIImage outputImage(const MTIImage& outgoing, const MTIImage& incoming, double progress) {
        return filter_.outputImage(outgoing, incoming, progress);
    }

  private:
    double seconds_, stillSeconds_;
    Footage first_, second_;
    Fit fit_;
    FrameShape frame_;
    TransitionFilter filter_;
};

}  // namespace qv::host
