#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>

#include "Host/Edit/EditFrames.h"
#include "Host/Edit/EditLook.h"
#include "Host/Edit/EditPlayers.h"
#include "Platform/Media/AudioMix.h"

namespace qv::host {

/// What the encoder takes as it is.
struct EncodedFrames {
    PixelFormat format = PixelFormat::i420;
    ColorDescription color;
};

/// The frames and the sound of a timeline, in the order of their times.
///
/// Where the timeline keeps times, the first clip's frames come at their own, to the end of its part, and the
/// rest goes on at its rate; else all frames come at the output's rate. A frame from t to t + d shows a
/// transition at the progress of its middle, t + d/2, so that the first is just after 0 and the last just
/// before 1.
class EditSource : public FrameSource {
  public:
    /// `sound` may be nil. `note` is told what the look has to say. Of a span the frames are what they are in
    /// the whole. Fails as input.
    EditSource(std::unique_ptr<EditTimeline> timeline, const EncodedFrames& encoded, MTIContext& context,
               std::unique_ptr<AudioMix> sound, NoteSink note, const EditSpan& span = {});

    /// Compiles what the beginning needs, so that its first frames do not stutter. Before next().
    void prepare(MTIContext& context);

    Item next() override;
    MTIImage picture(const SourceFrame& frame) override;

  private:
    std::optional<SourceFrame> nextFrame();
    std::optional<SourceFrame> nextOfFirst();
    std::optional<SourceFrame> nextSlot();
    std::optional<AudioSamples> nextSound();
    void setLayers(SourceFrame& frame);
    bool takenAsItIs(const Footage& footage, const PixelBuffer& pixels) const;
    void begin();
    double secondsOfUnit() const { return timeline_->video().timeBase.value(); }

    std::unique_ptr<EditTimeline> timeline_;
    EncodedFrames encoded_;
    EditPlayers players_;
    EditLook look_;
    std::unique_ptr<AudioMix> sound_;
    EditSpan span_;

    std::deque<ClipPacket> packets_;
    std::optional<SourceFrame> waiting_;  ///< until the sound of its time is given out
    bool firstEnded_;                     ///< of the frames with times of their own
    bool hasBegun_ = false;
    std::int64_t timeOffset_ = 0;  ///< of the output's first frame, where times are those of the file
    /// Where the frames at the output's rate begin, seconds, and how many have been given out.
    double slotsBegin_ = 0;
    std::int64_t slots_ = 0;
    double end_ = 0;                          ///< of the last frame given out
    std::int64_t given_ = 0, firstTime_ = 0;  ///< frames given out, and the first one's time in the whole
};

}  // namespace qv::host
