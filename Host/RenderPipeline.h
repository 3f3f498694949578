#pragma once

#include <functional>
#include <memory>

#include "Host/BoundedQueue.h"
#include "Host/Clip.h"
#include "Host/CommandLine.h"
#include "Host/FramePool.h"
#include "Host/Timeline.h"
#include "Platform/ImageGraph/MTIContext.h"
#include "Platform/Media/ClipWriter.h"

namespace qv::host {

/// Effects over the frames of one clip, upright as a viewer sees them.
class ClipEffects {
  public:
    /// `seconds` is the clip's length, 0 when unknown. `mask` may be nil: then a frame's own alpha is its
    /// mask.
    ClipEffects(std::vector<EffectChoice> choices, const ClipInfo& info, double seconds,
                std::unique_ptr<MaskSource> mask);

    /// The picture for a frame `seconds` after the first one, in the file's orientation. Times must not fall.
    MTIImage outputImage(const PixelBuffer& frame, double seconds);

  private:
    SubjectMask ownMask(const PixelBuffer& frame) const;

    EffectChain chain_;
    std::unique_ptr<MaskSource> mask_;
    int rotation_;
};

/// Decodes, renders and encodes a clip, each on a thread of its own, so that they overlap. Frames stay in
/// order.
class RenderPipeline {
  public:
    struct Parts {
        std::unique_ptr<ClipReader> reader;
        std::unique_ptr<ClipEffects> effects;
        std::shared_ptr<MTIContext> context;
        std::unique_ptr<ClipWriter> writer;
        PixelSize size;                   ///< of the encoded frames
        std::int64_t timesEachFrame = 1;  ///< how often a frame is shown; above 1 for a single picture
    };
    explicit RenderPipeline(Parts parts);

    /// Runs to the end of the clip; `progress` is told frames done and the last one's seconds. Fails with the
    /// first cause of any stage, or as interrupted; nothing is left of the output then.
    void run(const std::function<void(std::int64_t frames, double seconds)>& progress);

  private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace qv::host
