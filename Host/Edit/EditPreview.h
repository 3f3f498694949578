#pragma once

#include <memory>

#include "Host/CommandLine/Device.h"
#include "Host/Edit/EditLook.h"
#include "Host/Edit/EditPlayers.h"

namespace qv::host {

/// Single frames of a project, at any times in any order. One thread at a time.
class EditPreview {
  public:
    /// The device is opened once the project is known to be right. `note` is told what the user may want to
    /// know. `photoSeconds` as EditLook has it. Fails with all mistakes, or as device.
    EditPreview(Project project, ReadingOptions reading, const DeviceOptions& device, NoteSink note,
                double photoSeconds = 0);

    /// The same of a timeline that is known to be right.
    EditPreview(std::unique_ptr<EditTimeline> timeline, std::shared_ptr<MTIContext> context, NoteSink note,
                double photoSeconds = 0);

    /// Goes on with another look, as EditTimeline::takeLook() has it; the clips stay open. With mistakes
    /// nothing is to be asked of it until it has taken another.
    void takeLook(const Project& project, Mistakes& mistakes, NoteSink note, double photoSeconds);

    const EditTimeline& timeline() const { return *timeline_; }
    MTIContext& context() const { return *context_; }

    /// The picture of the frame that begins at a time, upright, as a graph of the output's size. Effects see
    /// the time of the clip's frame where it is at its own, as in a clip that keeps them; a transition is at
    /// the progress of the frame's middle. Fails as input, usage or internal.
    MTIImage imageAt(double seconds);
    /// A transition at a progress, between the frames that are shown then.
    MTIImage transitionAt(std::size_t incoming, double progress);

  private:
    void begin(NoteSink note, double photoSeconds);

    std::shared_ptr<MTIContext> context_;
    std::unique_ptr<EditTimeline> timeline_;
    std::unique_ptr<EditPlayers> players_;
    std::unique_ptr<EditLook> look_;
};

}  // namespace qv::host
