#include "Host/Edit/EditLook.h"

#include <utility>

namespace qv::host {

namespace {

std::vector<EffectChoice> choicesOf(const std::vector<ProjectEffect>& effects) {
    std::vector<EffectChoice> choices;
    for (const ProjectEffect& effect : effects) choices.push_back(effect.choice);
    return choices;
}

ClipPosition positionFor(double length, double rate) {
    return {.time = 0.0,
            .startTime = 0.0,
            .endTime = length < kUnlimited ? std::optional(length) : std::nullopt,
            .frameRate = rate};
}

template <typename Value>
void leaveBefore(std::map<std::size_t, Value>& values, std::size_t first, std::size_t last) {
    std::erase_if(values, [&](const auto& each) { return each.first < first || each.first > last; });
}

}  // namespace

EditLook::EditLook(const EditTimeline& timeline, NoteSink note, double photoSeconds)
    : timeline_(timeline),
      note_(std::move(note)),
      photoSeconds_(photoSeconds),
      whole_(choicesOf(timeline.project().effects), positionFor(timeline.end(), timeline.rate())),
      lastWithoutSubject_(timeline.clips().size()) {}

EditLook::ClipLook& EditLook::lookOf(std::size_t clip) {
    if (const auto found = looks_.find(clip); found != looks_.end()) return found->second;
    const TimelineClip& entry = timeline_.clips()[clip];
    ClipPosition position = positionFor(entry.length, timeline_.rate());
    position.isPhoto = entry.isPicture;
    if (entry.isPicture) position.time = photoSeconds_;
    EffectChain chain(choicesOf(entry.clip.effects), position);
    std::unique_ptr<MaskSource> mask;
    if (chain.takesMask()) mask = openMaskSource(entry.clip.mask, timeline_.reading(entry.clip.mask), note_);
    return looks_.emplace(clip, ClipLook{std::move(chain), std::move(mask)}).first->second;
}

TransitionFilter& EditLook::transitionTo(std::size_t clip) {
    const TimelineClip& entry = timeline_.clips()[clip];
    return transitions_
        .try_emplace(clip, entry.clip.transition->choice, CMTimeRangeMakeWithSeconds(entry.start, entry.lead),
                     timeline_.rate())
        .first->second;
}

SubjectMask EditLook::subjectOf(ClipLook& look, const FrameLayer& layer) {
    const SubjectMask mask = look.mask->maskOf(layer.pixels, layer.sourceSeconds);
    if (!mask) {
        if (std::exchange(lastWithoutSubject_, layer.clip) != layer.clip)
            note_(unknownSubject(timeline_.clips()[layer.clip].clip.path));
        return {};
    }
    const CGSize size = layer.pixels.size();
    const Rational stored = timeline_.clips()[layer.clip].video.pixelAspect;
    const double aspect = layer.pixels.picture || stored.value() <= 0 ? 1 : stored.value();
    const bool isTurned = layer.pixels.rotation % 180 != 0;
    const PixelBuffer fitting = fittedMask(mask.buffer, {size, isTurned ? 1 / aspect : aspect},
                                           timeline_.frame(), timeline_.fit(layer.clip));
    const bool isSame = fitting.plane(0).data == mask.buffer.plane(0).data;
    return isSame ? mask : SubjectMask::fromBuffer(fitting);
}

MTIImage EditLook::imageOf(const FrameLayer& layer) {
    ClipLook& look = lookOf(layer.clip);
    look.chain.moveTo(layer.seconds);
    if (!look.chain.isActive()) return layer.image;
    FilterInputs inputs;
    inputs.first = layer.image;
    inputs.originalSize = layer.image.size();
    if (look.mask) inputs.mask = subjectOf(look, layer);
    return look.chain.outputImage(inputs);
}

bool EditLook::changes(const SourceFrame& frame) {
    if (frame.layers.size() > 1) return true;
    whole_.moveTo(frame.seconds);
    if (whole_.isActive()) return true;
    EffectChain& chain = lookOf(frame.layers[0].clip).chain;
    chain.moveTo(frame.layers[0].seconds);
    return chain.isActive();
}

MTIImage EditLook::image(const SourceFrame& frame) {
    const std::size_t first = frame.layers.front().clip, last = frame.layers.back().clip;
    leaveBefore(looks_, first, last);
    leaveBefore(transitions_, first, last);
    FilterInputs inputs;
    inputs.first = imageOf(frame.layers.front());
    if (last != first)
        inputs.first =
            transitionTo(last).outputImage(inputs.first, imageOf(frame.layers.back()), frame.progress);
    whole_.moveTo(frame.seconds);
    if (!whole_.isActive()) return inputs.first;
    inputs.originalSize = inputs.first.size();
    return whole_.outputImage(inputs);
}

}  // namespace qv::host
