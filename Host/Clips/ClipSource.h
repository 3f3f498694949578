#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Host/Clips/Clip.h"
#include "Host/Clips/FrameSource.h"
#include "Host/Clips/MaskSource.h"
#include "Host/Clips/Timeline.h"

namespace qv::host {

/// Effects over the frames of one clip, upright as a viewer sees them.
class ClipEffects {
  public:
    /// `seconds` is the clip's length, 0 when unknown.
    ClipEffects(std::vector<EffectChoice> choices, const ClipInfo& info, double seconds,
                std::unique_ptr<MaskSource> mask);

    /// The picture for a frame `seconds` after the first one, in the file's orientation. Times must not fall.
    MTIImage outputImage(const PixelBuffer& frame, double seconds);
    /// Whether an effect works on the subject, and the last frame's is not known.
    bool lacksSubject() const { return lacksSubject_; }

  private:
    EffectChain chain_;
    std::unique_ptr<MaskSource> mask_;
    int rotation_;
    bool lacksSubject_ = false;
};

/// A clip through effects; its other streams' packets pass by.
class ClipSource : public FrameSource {
  public:
    /// A frame is shown `timesEachFrame` times; above 1 for a single picture.
    ClipSource(std::unique_ptr<ClipReader> reader, std::unique_ptr<ClipEffects> effects,
               std::int64_t timesEachFrame);

    Item next() override;
    MTIImage picture(const SourceFrame& frame) override;

  private:
    std::unique_ptr<ClipReader> reader_;
    std::unique_ptr<ClipEffects> effects_;
    std::int64_t timesEachFrame_, timesLeft_ = 0;
    ClipFrame repeated_;
    std::optional<std::int64_t> firstTime_;
};

}  // namespace qv::host
