#include "Host/Edit/EditPlayers.h"

#include <algorithm>

namespace qv::host {

std::pair<std::size_t, std::size_t> EditPlayers::clipsAt(double seconds) const {
    const auto& clips = timeline_.clips();
    const auto after =
        std::upper_bound(clips.begin() + 1, clips.end(), seconds + kTimeTolerance,
                         [](double time, const TimelineClip& clip) { return time < clip.start; });
    const auto last = std::size_t(after - clips.begin()) - 1;
    const bool overlaps =
        last > 0 && clips[last].lead > 0 && seconds < clips[last - 1].end() - kTimeTolerance;
    return {overlaps ? last - 1 : last, last};
}

Footage& EditPlayers::footage(std::size_t clip) {
    std::unique_ptr<Footage>& footage = open_[clip];
    if (!footage) {
        footage = timeline_.open(clip);
        footage->render(context_, timeline_.frame(), timeline_.fit(clip));
    }
    return *footage;
}

std::vector<FrameLayer> EditPlayers::layersAt(double seconds) {
    const auto [first, last] = clipsAt(seconds);
    return layersOf(first, last, seconds);
}

std::vector<FrameLayer> EditPlayers::layersOf(std::size_t first, std::size_t last, double seconds) {
    std::erase_if(open_, [&](const auto& each) { return each.first < first || each.first > last; });
    std::vector<FrameLayer> layers;
    for (std::size_t i = first; i <= last; ++i) {
        const TimelineClip& entry = timeline_.clips()[i];
        Footage& shown = footage(i);
        FrameLayer layer{.clip = i, .seconds = seconds - entry.start};
        layer.sourceSeconds = entry.from + layer.seconds;
        if (ShownFrames* frames = shown.frames()) frames->near(std::max(layer.sourceSeconds, 0.0));
        layer.image = shown.imageAt(layer.sourceSeconds, timeline_.frame(), timeline_.fit(i));
        layer.pixels = shown.pixelsAt(layer.sourceSeconds);
        layers.push_back(std::move(layer));
    }
    return layers;
}

}  // namespace qv::host
