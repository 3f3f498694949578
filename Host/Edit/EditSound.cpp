#include "Host/Edit/EditSound.h"

#include <algorithm>
#include <optional>

namespace qv::host {

namespace {

/// What the file's sound is like; nothing where there is none.
std::optional<AudioFormat> formatOf(const std::string& path) {
    std::string cause;
    const auto reader = AudioReader::open(path, &cause);
    if (!cause.empty()) fail(ExitCode::input, "{}", cause);
    return reader ? std::optional(reader->format()) : std::nullopt;
}

AudioMixPart partOf(const ProjectSound& sound, const EditTimeline& timeline) {
    const double rate = timeline.rate();
    AudioMixPart part{.path = sound.path,
                      .origin = sound.from.seconds(rate),
                      .start = sound.offset.seconds(rate),
                      .end = timeline.end(),
                      .gain = sound.gain};
    if (sound.duration) part.end = std::min(part.end, part.start + sound.duration->seconds(rate));
    // No fade is longer than what is heard.
    const double heard = std::max(part.end - part.start, 0.0);
    part.fadeIn = std::min(sound.fadeIn.seconds(rate), heard);
    part.fadeOut = std::min(sound.fadeOut.seconds(rate), heard);
    return part;
}

}  // namespace

std::unique_ptr<AudioMix> openSound(const EditTimeline& timeline) {
    std::vector<AudioMixPart> parts;
    std::optional<AudioFormat> format;
    const Project& project = timeline.project();
    const auto add = [&](AudioMixPart part) {
        if (!format) format = formatOf(part.path);
        parts.push_back(std::move(part));
    };
    for (const TimelineClip& entry : timeline.clips()) {
        if (!project.clipSound || entry.clip.gain <= 0 || entry.soundTracks == 0) continue;
        // Of a part by itself the last frame may end later than was asked.
        const double end = timeline.clips().size() > 1 ? entry.end() : kUnlimited;
        add({.path = entry.clip.path,
             .origin = entry.origin + entry.from,
             .start = entry.start,
             .end = end,
             .gain = entry.clip.gain,
             .fadeIn = entry.lead,
             .fadeOut = entry.tail});
    }
    if (project.sound) add(partOf(*project.sound, timeline));
    return format ? std::make_unique<AudioMix>(*format, std::move(parts)) : nullptr;
}

}  // namespace qv::host
