#include "Host/Edit/EditSource.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace qv::host {

namespace {
/// Samples of a piece of sound, at most.
constexpr std::int64_t kSoundPiece = 4096;
}  // namespace

EditSource::EditSource(std::unique_ptr<EditTimeline> timeline, const EncodedFrames& encoded,
                       MTIContext& context, std::unique_ptr<AudioMix> sound, NoteSink note,
                       const EditSpan& span)
    : timeline_(std::move(timeline)),
      encoded_(encoded),
      players_(*timeline_, context),
      look_(*timeline_, std::move(note)),
      sound_(std::move(sound)),
      span_(span),
      firstEnded_(!timeline_->keepsTimes()) {
    if (span_.first > 0) begin();
    if (!timeline_->isWholeClip()) return;
    if (ShownFrames* frames = players_.footage(0).frames()) {
        const double units = secondsOf(frames->info(), frames->firstTime()) / secondsOfUnit();
        timeOffset_ = timeline_->keepsTimes() ? frames->firstTime() : std::llround(units);
    }
}

/// Goes to the span's first frame.
void EditSource::begin() {
    if (span_.first >= span_.own) {
        firstEnded_ = true;
        slotsBegin_ = span_.slotsBegin;
        slots_ = span_.first - span_.own;
        return;
    }
    const TimelineClip& entry = timeline_->clips()[0];
    ShownFrames& frames = *players_.footage(0).frames();
    frames.goTo(entry.from + span_.seconds);
    if (std::abs(frames.seconds() - entry.from - span_.seconds) > kTimeTolerance)
        fail(ExitCode::input, "'{}' has no frame that begins at {:.6f} s", entry.clip.path,
             entry.from + span_.seconds);
}

void EditSource::prepare(MTIContext& context) {
    SourceFrame frame{.seconds = span_.seconds};
    frame.layers = players_.layersAt(span_.seconds);
    context.prepare(picture(frame));
    const auto& clips = timeline_->clips();
    const std::size_t next = frame.layers.back().clip + 1;
    if (frame.layers.size() > 1 || next >= clips.size() || clips[next].lead <= 0 ||
        !clips[next].clip.effects.empty())
        return;
    // The next clip is not open yet: any picture of the output's shape will do.
    frame.layers.push_back({.clip = next, .image = frame.layers[0].image, .pixels = frame.layers[0].pixels});
    for (const double progress : {0.1, 0.5, 0.9}) {
        frame.progress = progress;
        context.prepare(picture(frame));
    }
}

FrameSource::Item EditSource::next() {
    if (!waiting_) waiting_ = nextFrame();
    if (!packets_.empty()) {
        ClipPacket packet = std::move(packets_.front());
        packets_.pop_front();
        return packet;
    }
    if (auto samples = nextSound()) return *std::move(samples);
    if (!waiting_) return {};
    return *std::exchange(waiting_, std::nullopt);
}

/// Sound comes before the frames of its time, and ends where the last one does.
std::optional<AudioSamples> EditSource::nextSound() {
    if (!sound_) return std::nullopt;
    const std::int64_t left = std::llround(end_ * sound_->format().sampleRate) - sound_->position();
    if (left <= 0) return std::nullopt;
    AudioSamples samples = sound_->read(std::min(left, kSoundPiece));
    if (samples.empty()) fail(ExitCode::input, "{}", sound_->error());
    return samples;
}

std::optional<SourceFrame> EditSource::nextOfFirst() {
    const TimelineClip& entry = timeline_->clips()[0];
    ShownFrames& frames = *players_.footage(0).frames();
    const bool isMore = !std::exchange(hasBegun_, true) || frames.advance();
    const double seconds = frames.seconds() - entry.from;
    if (isMore && seconds < entry.length - kTimeTolerance) {
        SourceFrame result{.frame = frames.current(), .seconds = seconds};
        result.frame.time -= frames.firstTime() + std::llround(entry.from / secondsOfUnit());
        return result;
    }
    firstEnded_ = true;
    // Also where the file had told less.
    slotsBegin_ = std::max(end_, entry.length);
    return std::nullopt;
}

std::optional<SourceFrame> EditSource::nextSlot() {
    if (timeline_->keepsTimes() && timeline_->clips().size() == 1) return std::nullopt;
    const std::int64_t count = std::llround((timeline_->end() - slotsBegin_) * timeline_->rate());
    const bool isOnly = slotsBegin_ == 0 && slots_ == 0;
    return slots_ < count || isOnly ? std::optional(slotFrame(*timeline_, slotsBegin_, slots_++))
                                    : std::nullopt;
}

std::optional<SourceFrame> EditSource::nextFrame() {
    std::optional<SourceFrame> frame;
    if (given_ == span_.count) return std::nullopt;
    if (!firstEnded_) frame = nextOfFirst();
    if (!frame) frame = nextSlot();
    if (!frame) return std::nullopt;
    setLayers(*frame);
    const FrameLayer& layer = frame->layers[0];
    if (ShownFrames* frames = players_.footage(layer.clip).frames()) {
        const bool isPast = timeline_->end() >= kUnlimited && frames->hasEnded(layer.sourceSeconds);
        if (isPast) return std::nullopt;
    }
    end_ = std::max(end_, frame->seconds + double(frame->frame.duration) * secondsOfUnit());
    frame->frame.time += timeOffset_;
    if (given_++ == 0 && span_.onFrame) firstTime_ = frame->frame.time;
    if (span_.onFrame) span_.onFrame(frame->frame.time, frame->frame.duration);
    frame->frame.time -= firstTime_;
    return frame;
}

/// What is seen at the frame's time, and how far a transition is.
void EditSource::setLayers(SourceFrame& frame) {
    frame.layers = players_.layersAt(frame.seconds);
    const FrameLayer& layer = frame.layers[0];
    if (ShownFrames* frames = players_.footage(layer.clip).frames()) {
        for (ClipPacket& packet : frames->takePackets()) packets_.push_back(std::move(packet));
    }
    if (frame.layers.size() > 1) {
        const TimelineClip& incoming = timeline_->clips()[frame.layers[1].clip];
        const double middle = frame.seconds + double(frame.frame.duration) * secondsOfUnit() / 2;
        frame.progress = std::clamp((middle - incoming.start) / incoming.lead, 0.0, 1.0);
        frame.frame.pixels = {};
    } else {
        const bool isKept = takenAsItIs(players_.footage(layer.clip), layer.pixels.pixels);
        frame.frame.pixels = isKept ? layer.pixels.pixels : PixelBuffer();
    }
}

/// Whether a frame needs neither fitting nor another kind of pixels.
bool EditSource::takenAsItIs(const Footage& footage, const PixelBuffer& pixels) const {
    if (!pixels || footage.isPicture()) return false;
    const ClipVideoFormat &from = footage.video(), &to = timeline_->video();
    return from.rotation == to.rotation && from.pixelAspect == to.pixelAspect && pixels.width() == to.width &&
           pixels.height() == to.height && pixels.format() == encoded_.format &&
           pixels.color() == encoded_.color;
}

MTIImage EditSource::picture(const SourceFrame& frame) {
    if (frame.frame.pixels && !look_.changes(frame)) return {};
    return turned(look_.image(frame), (360 - timeline_->video().rotation) % 360);
}

}  // namespace qv::host
