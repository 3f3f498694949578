#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "Host/Clips/FrameSource.h"
#include "Host/Transition/TransitionTimeline.h"
#include "Platform/Media/AudioCrossfade.h"

namespace qv::host {

/// What the frames of the output are like.
struct OutputFrames {
    ClipVideoFormat video;  ///< with the time base and the rate of the frames
    /// Of the pixels that the encoder takes as they are.
    PixelFormat format = PixelFormat::i420;
    ColorDescription color;
};

/// The frames and the sound of two clips with a transition between them.
///
/// The first clip's frames come at their own times, to its end. Those that begin within the transition show
/// it: a frame from t to t + d at the progress of its middle, t + d/2, so that the first is just after 0 and
/// the last just before 1. Then the second clip goes on at the first one's rate.
class TransitionSource : public FrameSource {
  public:
    /// `sound` may be nil.
    TransitionSource(std::unique_ptr<TransitionTimeline> timeline, const OutputFrames& output,
                     std::unique_ptr<AudioCrossfade> sound);

    Item next() override;
    MTIImage picture(const SourceFrame& frame) override;

    std::int64_t frameCountEstimate() const;

  private:
    std::optional<SourceFrame> nextFrame();
    std::optional<SourceFrame> nextOfFirst();
    SourceFrame slot(double begin, std::int64_t index) const;
    bool takenAsItIs(const Footage& footage, const ClipFrame& frame) const;
    double rate() const { return output_.video.averageFrameRate.value(); }

    std::unique_ptr<TransitionTimeline> timeline_;
    OutputFrames output_;
    std::unique_ptr<AudioCrossfade> sound_;
    std::optional<SourceFrame> waiting_;
    bool firstEnded_ = false;
    /// Where the frames of the second clip alone begin, seconds: where the first one's last frame ends, also
    /// where its file had told less.
    double secondBegin_ = 0;
    std::int64_t firstSlots_ = 0, secondSlots_ = 0;  ///< given out
};

}  // namespace qv::host
