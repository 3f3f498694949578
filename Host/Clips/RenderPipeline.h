#pragma once

#include <functional>
#include <memory>

#include "Host/Clips/BoundedQueue.h"
#include "Host/Clips/FramePool.h"
#include "Host/Clips/FrameSource.h"
#include "Host/CommandLine/CommandLine.h"
#include "Platform/ImageGraph/MTIContext.h"
#include "Platform/Media/ClipWriter.h"

namespace qv::host {

/// Decodes, renders and encodes, each on a thread of its own, so that they overlap. Frames stay in order.
class RenderPipeline {
  public:
    struct Parts {
        std::unique_ptr<FrameSource> source;
        std::shared_ptr<MTIContext> context;
        std::unique_ptr<ClipWriter> writer;
        PixelSize size;  ///< of the encoded frames
    };
    explicit RenderPipeline(Parts parts);

    /// Runs to the end of the source; `progress` is told frames done and the last one's seconds. Fails with
    /// the first cause of any stage, or as interrupted; nothing is left of the output then.
    void run(const std::function<void(std::int64_t frames, double seconds)>& progress);

  private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace qv::host
