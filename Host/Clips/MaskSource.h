#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Host/Clips/Timeline.h"
#include "Platform/Media/Bitmap.h"
#include "Platform/Media/ClipReader.h"

/// Where the masks of subjects come from.
namespace qv::host {

/// Of --mask, where it is the input's.
inline constexpr const char* kMaskHelp =
    "Picture or video that is white where the subject is; auto: the people in the input";
/// What --mask is then; a file of that name is ./auto.
inline constexpr const char* kAutomaticMask = "auto";

/// A frame as it was read: a clip's, or a picture.
struct FramePixels {
    PixelBuffer pixels;  ///< a clip's, as they lie in the file; nil for a picture
    int rotation = 0;    ///< degrees clockwise that turn them upright
    Bitmap picture;      ///< nil for a clip

    /// Upright.
    CGSize size() const;
};

/// Gives the subject's mask of each frame of one clip. One thread at a time.
class MaskSource {
  public:
    virtual ~MaskSource() = default;

    /// The subject of a frame `seconds` after the first one, upright and of the frame's shape if not of its
    /// size; nil where none is known. Fails as input.
    virtual SubjectMask maskOf(const FramePixels& frame, double seconds) = 0;
};

/// Takes one line for the user.
using NoteSink = std::function<void(const std::string& line)>;

/// The source that --mask names: a picture, or a clip that begins with the masked one and is held at its end.
/// Another shape is stretched over the frame. Without a name it is each frame's own alpha, and people that
/// are found in it as kAutomaticMask. `options` are for a clip; `note` is told once of what does not fit.
/// Fails as input.
std::unique_ptr<MaskSource> openMaskSource(const std::string& path, const ClipReaderOptions& options,
                                           const NoteSink& note);

/// What the user is told when an effect works on the subject of a clip without a mask.
std::string unknownSubject(const std::string& input);

}  // namespace qv::host
