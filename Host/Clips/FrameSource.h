#pragma once

#include <cstddef>
#include <variant>
#include <vector>

#include "Host/Clips/MaskSource.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/Media/AudioSamples.h"
#include "Platform/Media/ClipInfo.h"

namespace qv::host {

/// A frame of one of the clips that an output's frame is made of.
struct FrameLayer {
    std::size_t clip = 0;      ///< its number
    MTIImage image;            ///< upright, of the output's shape
    FramePixels pixels;        ///< as it was read, for finding the subject
    double seconds = 0;        ///< since the clip's part began
    double sourceSeconds = 0;  ///< since the file's first frame
};

/// A frame of the output before it is rendered.
struct SourceFrame {
    ClipFrame frame;                 ///< pixels: to be encoded as they are, where nothing is drawn on them
    double seconds = 0;              ///< since the output's first frame
    std::vector<FrameLayer> layers;  ///< one, or those on both sides of a transition; none: the pixels
    double progress = 0;             ///< of the transition
};

/// What goes through a RenderPipeline, in the output's order.
class FrameSource {
  public:
    virtual ~FrameSource() = default;

    using Item = std::variant<std::monostate, SourceFrame, ClipPacket, AudioSamples>;
    /// Called on the decoding thread. Nothing at the end. Fails as input.
    virtual Item next() = 0;
    /// The picture for a frame, in the file's orientation; nil when its own pixels are to be encoded as they
    /// are. Called on the rendering thread, in order.
    virtual MTIImage picture(const SourceFrame& frame) = 0;
};

}  // namespace qv::host
