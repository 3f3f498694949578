#include "Host/Transition/TransitionSource.h"

#include <algorithm>
#include <cmath>

#include "Host/CommandLine/Failure.h"

namespace qv::host {

namespace {
/// Samples of a piece of sound.
constexpr std::int64_t kSoundPiece = 4096;
}  // namespace

TransitionSource::TransitionSource(std::unique_ptr<TransitionTimeline> timeline, const OutputFrames& output,
                                   std::unique_ptr<AudioCrossfade> sound)
    : timeline_(std::move(timeline)),
      output_(output),
      sound_(std::move(sound)),
      secondBegin_(timeline_->first().seconds()) {}

std::int64_t TransitionSource::frameCountEstimate() const {
    return std::llround(timeline_->end() * rate());
}

/// Sound comes before the frames of its time.
FrameSource::Item TransitionSource::next() {
    if (!waiting_) waiting_ = nextFrame();
    if (sound_ && (!waiting_ || sound_->position() <= waiting_->seconds)) {
        AudioSamples samples = sound_->read(kSoundPiece);
        if (!samples.empty()) return samples;
        if (!sound_->error().empty()) fail(ExitCode::input, "{}", sound_->error());
        sound_.reset();
    }
    if (!waiting_) return {};
    SourceFrame frame = std::move(*waiting_);
    waiting_.reset();
    return frame;
}

/// A frame of the output's rate with its times, counted from `begin`.
SourceFrame TransitionSource::slot(double begin, std::int64_t index) const {
    const double unit = output_.video.timeBase.value();
    const auto timeOf = [&](std::int64_t i) { return std::llround((begin + double(i) / rate()) / unit); };
    SourceFrame result;
    result.frame.time = timeOf(index);
    result.frame.duration = std::max<std::int64_t>(1, timeOf(index + 1) - result.frame.time);
    result.seconds = begin + double(index) / rate();
    return result;
}

std::optional<SourceFrame> TransitionSource::nextOfFirst() {
    ShownFrames* frames = timeline_->first().frames();
    if (!frames) {
        const bool more = firstSlots_ < std::llround(timeline_->first().seconds() * rate());
        return more ? std::optional(slot(0, firstSlots_++)) : std::nullopt;
    }
    if (firstSlots_++ > 0 && !frames->advance()) return std::nullopt;
    SourceFrame result{frames->current(), frames->seconds()};
    result.frame.time -= frames->firstTime();
    secondBegin_ =
        std::max(secondBegin_, secondsOf(frames->info(), result.frame.time + result.frame.duration));
    return result;
}

std::optional<SourceFrame> TransitionSource::nextFrame() {
    TransitionTimeline& timeline = *timeline_;
    if (!firstEnded_) {
        if (auto next = nextOfFirst()) {
            SourceFrame& frame = *next;
            const bool plain = frame.seconds < timeline.start() - kTimeTolerance;
            if (plain && takenAsItIs(timeline.first(), frame.frame)) return frame;
            frame.frame.pixels = {};
            frame.outgoing = timeline.firstAt(frame.seconds);
            if (plain) return frame;
            frame.incoming = timeline.secondAt(frame.seconds);
            const double middle =
                frame.seconds + double(frame.frame.duration) * output_.video.timeBase.value() / 2;
            frame.progress = std::clamp((middle - timeline.start()) / timeline.seconds(), 0.0, 1.0);
            return frame;
        }
        firstEnded_ = true;
    }
    if (secondSlots_ >= std::llround((timeline.end() - secondBegin_) * rate())) return std::nullopt;
    SourceFrame frame = slot(secondBegin_, secondSlots_++);
    if (ShownFrames* frames = timeline.second().frames()) {
        const ClipFrame& shown = frames->at(frame.seconds - timeline.start());
        if (takenAsItIs(timeline.second(), shown)) {
            frame.frame.pixels = shown.pixels;
            return frame;
        }
    }
    frame.outgoing = timeline.secondAt(frame.seconds);
    return frame;
}

/// Whether a frame needs neither fitting nor another kind of pixels.
bool TransitionSource::takenAsItIs(const Footage& footage, const ClipFrame& frame) const {
    if (footage.isPicture()) return false;
    const ClipVideoFormat &from = footage.video(), &to = output_.video;
    return from.rotation == to.rotation && from.pixelAspect == to.pixelAspect &&
           frame.pixels.width() == to.width && frame.pixels.height() == to.height &&
           frame.pixels.format() == output_.format && frame.pixels.color() == output_.color;
}

MTIImage TransitionSource::picture(const SourceFrame& frame) {
    if (!frame.outgoing) return {};
    const MTIImage upright = frame.incoming
                                 ? timeline_->outputImage(frame.outgoing, frame.incoming, frame.progress)
                                 : frame.outgoing;
    return turned(upright, (360 - output_.video.rotation) % 360);
}

}  // namespace qv::host
