#pragma once

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "Host/Clips/FrameSource.h"
#include "Host/Edit/EditTimeline.h"

namespace qv::host {

/// The clips of a timeline that are open: one, or two in a transition. One thread at a time.
class EditPlayers {
  public:
    /// Both must outlive it.
    EditPlayers(EditTimeline& timeline, MTIContext& context) : timeline_(timeline), context_(context) {}

    /// A clip's file, which is opened now if it is not. Fails as input.
    Footage& footage(std::size_t clip);
    /// What is seen at a time; the clips that are not seen then are closed. Fails as input.
    std::vector<FrameLayer> layersAt(double seconds);
    /// The frames of two clips, or of one, at a time, whether they are seen then or not. Fails as input.
    std::vector<FrameLayer> layersOf(std::size_t first, std::size_t last, double seconds);

  private:
    /// The numbers of the clips that are seen at a time, the outgoing one first. After the end the last.
    std::pair<std::size_t, std::size_t> clipsAt(double seconds) const;

    EditTimeline& timeline_;
    MTIContext& context_;
    std::map<std::size_t, std::unique_ptr<Footage>> open_;
};

}  // namespace qv::host
