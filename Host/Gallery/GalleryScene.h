#pragma once

#include <string>
#include <vector>

#include "Host/Clips/Timeline.h"
#include "Host/CommandLine/CommandLine.h"
#include "Platform/ImageGraph/MTIContext.h"

/// The clips that a gallery's previews are made of.
namespace qv::host {

/// Every preview is this long, so that a picture's time is the same in all of them.
inline constexpr double kPreviewSeconds = 3;
inline constexpr int kPreviewRate = 20, kPreviewFrames = int(kPreviewSeconds * kPreviewRate);

inline double previewTime(int frame) {
    return double(frame) / kPreviewRate;
}

/// What the user gave to show the classes on. Without clips a drawn scene is taken.
struct GalleryFiles {
    std::vector<std::string> clips;  ///< the first, and for transitions the incoming one
    std::string mask;                ///< of the first clip's subject
};

/// A preview's frames of two clips and of the first one's subject, decoded and fitted once for all classes.
class GalleryScene {
  public:
    /// Frames cover `size`; a still picture is shown through a window that drifts over it and comes back
    /// where it began. What was not given is drawn; a mask only where the first clip is. Fails as input.
    GalleryScene(const GalleryFiles& files, PixelSize size, MTIContext& context);

    const FilterInputs& frame(int index) const { return frames_[std::size_t(index)]; }
    bool hasMask() const { return bool(frames_.front().mask); }

  private:
    std::vector<FilterInputs> frames_;
};

}  // namespace qv::host
