#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Host/Clip.h"
#include "Host/FrameFit.h"

namespace qv::host {

/// What lies on a timeline: a clip, or a picture that stands still. One thread at a time.
class Footage {
  public:
    /// A picture lasts `stillSeconds`. Fails as input.
    Footage(const std::string& path, double stillSeconds, const ClipReaderOptions& options = {});

    const std::string& path() const { return path_; }
    bool isPicture() const { return bool(picture_); }
    const ClipVideoFormat& video() const { return video_; }
    /// From the first frame to the end of the last.
    double seconds() const { return seconds_; }

    /// Goes to the frame that is shown `seconds` after the first one. Fails as input.
    void goTo(double seconds);
    /// The frame that is shown `seconds` after the first one, upright; after the end the last. Times must not
    /// fall but for goTo().
    MTIImage imageAt(double seconds);

  private:
    std::string path_;
    ClipVideoFormat video_;
    double seconds_ = 0;
    MTIImage picture_;                     ///< nil for a clip
    std::unique_ptr<ShownFrames> frames_;  ///< nil for a picture
    MTIImage shown_;
    std::int64_t shownTime_ = 0;
};

}  // namespace qv::host
