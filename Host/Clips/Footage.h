#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Host/Clips/Clip.h"
#include "Host/Clips/FrameFit.h"
#include "Host/Clips/MaskSource.h"
#include "Platform/ImageGraph/MTIContext.h"

namespace qv::host {

/// What lies on a timeline: a clip, or a picture that stands still. One thread at a time.
class Footage {
  public:
    /// Fails as input.
    explicit Footage(const std::string& path, const ClipReaderOptions& options = {});
    /// What the reader reads, from its beginning on. Fails as input.
    explicit Footage(std::unique_ptr<ClipReader> clip);
    /// A picture that is drawn.
    explicit Footage(const MTIImage& picture);

    bool isPicture() const { return bool(picture_); }
    const ClipVideoFormat& video() const { return video_; }
    /// A clip's frames; nil for a picture.
    ShownFrames* frames() { return frames_.get(); }

    /// Goes to the frame that is shown `seconds` after the first one. Fails as input.
    void goTo(double seconds);
    /// The frame that is shown `seconds` after the first one, upright and fitted into `frame`; after the end
    /// the last. Times must not fall but for goTo(). Fails as input.
    MTIImage imageAt(double seconds, const FrameShape& frame, Fit fit);
    /// The same as it was read; a picture always.
    FramePixels pixelsAt(double seconds);
    /// Renders a picture into the frame once and for all.
    void render(MTIContext& context, const FrameShape& frame, Fit fit);

  private:
    void take(std::unique_ptr<ClipReader> clip);

    ClipVideoFormat video_;
    FrameShape shape_;                     ///< of the upright images
    FramePixels still_;                    ///< nil for a clip
    MTIImage picture_;                     ///< of it
    std::unique_ptr<ShownFrames> frames_;  ///< nil for a picture
};

}  // namespace qv::host
