#pragma once

#include <variant>

#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/Media/AudioSamples.h"
#include "Platform/Media/ClipInfo.h"

namespace qv::host {

/// A frame of the output before it is rendered.
struct SourceFrame {
    ClipFrame frame;     ///< pixels: a clip's; nil where the picture is made of images alone
    double seconds = 0;  ///< since the output's first frame
    // Of a transition and of what must be fitted: upright, of the output's shape.
    MTIImage outgoing, incoming;
    double progress = 0;
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
