#include "Host/Edit/EditFrames.h"

#include <algorithm>
#include <cmath>

namespace qv::host {

namespace {

/// The first clip's frames, and where those at the output's rate go on.
void addOwnFrames(EditTimeline& timeline, EditFrames& frames) {
    const TimelineClip& entry = timeline.clips()[0];
    const std::string& path = entry.clip.path;
    std::vector<std::int64_t> times =
        openClip(path, timeline.reading(path))->frameTimes(std::size_t(EditSpan::kAll));
    ShownFrames shown(openClip(path, timeline.reading(path)));
    for (const std::int64_t time : times) {
        const double seconds = secondsOf(shown.info(), time - shown.firstTime()) - entry.from;
        if (time >= shown.firstTime() && seconds > -kTimeTolerance && seconds < entry.length - kTimeTolerance)
            frames.ownSeconds.push_back(seconds);
    }
    frames.own = std::int64_t(frames.ownSeconds.size());
    if (frames.own == 0)
        fail(ExitCode::input, "'{}' does not tell when its frames begin; --fps gives them a rate", path);
    const double last = frames.ownSeconds.back();
    shown.goTo(entry.from + last);
    frames.end = last + secondsOf(shown.info(), shown.current().duration);
    frames.slotsBegin = std::max(frames.end, entry.length);
}

}  // namespace

SourceFrame slotFrame(const EditTimeline& timeline, double begin, std::int64_t index) {
    const double rate = timeline.rate(), unit = timeline.video().timeBase.value();
    const auto timeOf = [&](std::int64_t i) { return std::llround((begin + double(i) / rate) / unit); };
    SourceFrame result;
    result.frame.time = timeOf(index);
    result.frame.duration = std::max<std::int64_t>(1, timeOf(index + 1) - result.frame.time);
    result.seconds = begin + double(index) / rate;
    return result;
}

double EditFrames::secondsAt(const EditTimeline& timeline, std::int64_t index) const {
    return index < own ? ownSeconds[std::size_t(index)]
                       : slotFrame(timeline, slotsBegin, index - own).seconds;
}

EditFrames framesOf(EditTimeline& timeline) {
    if (timeline.end() >= kUnlimited) fail(ExitCode::input, "nobody knows where this project ends");
    EditFrames frames;
    if (timeline.keepsTimes()) addOwnFrames(timeline, frames);
    frames.count = frames.own;
    if (timeline.keepsTimes() && timeline.clips().size() == 1) return frames;
    const auto slots = std::llround((timeline.end() - frames.slotsBegin) * timeline.rate());
    frames.count += std::max<std::int64_t>(slots, frames.own > 0 ? 0 : 1);
    if (frames.count == frames.own) return frames;
    const SourceFrame last = slotFrame(timeline, frames.slotsBegin, frames.count - frames.own - 1);
    frames.end = last.seconds + double(last.frame.duration) * timeline.video().timeBase.value();
    return frames;
}

}  // namespace qv::host
