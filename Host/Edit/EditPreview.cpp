#include "Host/Edit/EditPreview.h"

#include <algorithm>
#include <utility>

namespace qv::host {

EditPreview::EditPreview(Project project, ReadingOptions reading, const DeviceOptions& device, NoteSink note,
                         double photoSeconds) {
    Mistakes mistakes;
    timeline_ = std::make_unique<EditTimeline>(std::move(project), std::move(reading), EditPurpose::pictures,
                                               mistakes);
    mistakes.check();
    timeline_->begin();
    context_ = device.makeContext();
    players_ = std::make_unique<EditPlayers>(*timeline_, *context_);
    look_ = std::make_unique<EditLook>(*timeline_, std::move(note), photoSeconds);
}

MTIImage EditPreview::imageAt(double seconds) {
    SourceFrame frame{.seconds = seconds, .layers = players_->layersAt(seconds)};
    FrameLayer& first = frame.layers.front();
    if (frame.layers.size() > 1) {
        const TimelineClip& incoming = timeline_->clips()[frame.layers.back().clip];
        frame.progress = std::clamp((seconds - incoming.start) / incoming.lead, 0.0, 1.0);
    } else if (ShownFrames* frames = players_->footage(first.clip).frames();
               frames && timeline_->keepsTimes()) {
        const double earlier = first.sourceSeconds - frames->seconds();
        first.seconds -= earlier;
        first.sourceSeconds -= earlier;
    }
    return look_->image(frame);
}

MTIImage EditPreview::transitionAt(std::size_t incoming, double progress) {
    const TimelineClip& entry = timeline_->clips()[incoming];
    const double seconds = entry.start + progress * entry.lead;
    SourceFrame frame{.seconds = seconds,
                      .layers = players_->layersOf(incoming - 1, incoming, seconds),
                      .progress = progress};
    return look_->image(frame);
}

}  // namespace qv::host
