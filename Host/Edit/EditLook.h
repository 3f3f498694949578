#pragma once

#include <map>
#include <memory>

#include "Host/Clips/FrameSource.h"
#include "Host/Clips/TransitionFilter.h"
#include "Host/Edit/EditTimeline.h"

namespace qv::host {

/// The effects and transitions of a timeline. Filters live as long as their clips are seen. One thread at a
/// time.
class EditLook {
  public:
    /// The timeline must outlive it. `note` is told once of each clip whose subject is not known.
    /// `photoSeconds` is the time of effects that stand still on a photo.
    EditLook(const EditTimeline& timeline, NoteSink note, double photoSeconds = 0);

    /// The picture of a frame, upright. Fails as usage or internal.
    MTIImage image(const SourceFrame& frame);
    /// Whether anything is drawn on a frame that is of one clip.
    bool changes(const SourceFrame& frame);

  private:
    struct ClipLook {
        EffectChain chain;
        std::unique_ptr<MaskSource> mask;  ///< of a chain that takes one
    };

    ClipLook& lookOf(std::size_t clip);
    TransitionFilter& transitionTo(std::size_t clip);
    MTIImage imageOf(const FrameLayer& layer);
    SubjectMask subjectOf(ClipLook& look, const FrameLayer& layer);

    const EditTimeline& timeline_;
    NoteSink note_;
    double photoSeconds_;
    std::map<std::size_t, ClipLook> looks_;
    std::map<std::size_t, TransitionFilter> transitions_;  ///< by the incoming clip
    EffectChain whole_;
    std::size_t lastWithoutSubject_;
};

}  // namespace qv::host
