#include "Host/Edit/EditPreview.h"

#include <algorithm>
#include <utility>

namespace qv::host {

namespace {

std::unique_ptr<EditTimeline> checkedTimeline(Project project, ReadingOptions reading) {
    Mistakes mistakes;
    auto timeline = std::make_unique<EditTimeline>(std::move(project), std::move(reading),
                                                   EditPurpose::pictures, mistakes);
    mistakes.check();
    return timeline;
}

}  // namespace

EditPreview::EditPreview(std::unique_ptr<EditTimeline> timeline, std::shared_ptr<MTIContext> context,
                         NoteSink note, double photoSeconds)
    : context_(std::move(context)), timeline_(std::move(timeline)) {
    begin(std::move(note), photoSeconds);
}

EditPreview::EditPreview(Project project, ReadingOptions reading, const DeviceOptions& device, NoteSink note,
                         double photoSeconds)
    : timeline_(checkedTimeline(std::move(project), std::move(reading))) {
    context_ = device.makeContext();
    begin(std::move(note), photoSeconds);
}

void EditPreview::begin(NoteSink note, double photoSeconds) {
    timeline_->begin();
    players_ = std::make_unique<EditPlayers>(*timeline_, *context_);
    look_ = std::make_unique<EditLook>(*timeline_, std::move(note), photoSeconds);
}

void EditPreview::takeLook(const Project& project, Mistakes& mistakes, NoteSink note, double photoSeconds) {
    timeline_->takeLook(project, mistakes);
    if (mistakes.empty()) look_ = std::make_unique<EditLook>(*timeline_, std::move(note), photoSeconds);
}

MTIImage EditPreview::imageAt(double seconds) {
    SourceFrame frame{.seconds = seconds, .layers = players_->layersAt(seconds)};
    FrameLayer& first = frame.layers.front();
    if (frame.layers.size() > 1) {
        const TimelineClip& incoming = timeline_->clips()[frame.layers.back().clip];
        const double middle = seconds + 0.5 / timeline_->rate();
        frame.progress = std::clamp((middle - incoming.start) / incoming.lead, 0.0, 1.0);
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
