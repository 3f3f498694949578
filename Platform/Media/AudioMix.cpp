#include "Platform/Media/AudioMix.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qv {

/// A part while it is heard; its times in samples of the timeline.
struct AudioMix::Voice {
    std::unique_ptr<AudioReader> reader;
    std::int64_t start, end, fadeInEnd, fadeOutStart;
    double gain;

    float gainAt(std::int64_t time) const {
        const auto quarterTurn = [&](std::int64_t from, std::int64_t to) {
            return (double(time - from) + 0.5) / double(to - from) * std::numbers::pi / 2;
        };
        double result = gain;
        if (time < fadeInEnd) result *= std::sin(quarterTurn(start, fadeInEnd));
        if (time >= fadeOutStart) result *= std::cos(quarterTurn(fadeOutStart, end));
        return float(result);
    }
};

AudioMix::AudioMix(const AudioFormat& format, std::vector<AudioMixPart> parts)
    : format_(format), parts_(std::move(parts)) {
    std::stable_sort(parts_.begin(), parts_.end(),
                     [](const AudioMixPart& a, const AudioMixPart& b) { return a.start < b.start; });
}
AudioMix::~AudioMix() = default;

std::int64_t AudioMix::samples(double seconds) const {
    return std::llround(seconds * format_.sampleRate);
}

bool AudioMix::begin(const AudioMixPart& part) {
    auto reader = AudioReader::open(part.path, &error_);
    if (!reader) return error_.empty();
    if (!reader->convertTo(format_, part.origin)) {
        error_ = "the sound of '" + part.path + "' cannot be converted";
        return false;
    }
    const std::int64_t start = samples(part.start), end = samples(part.end);
    voices_.push_back(
        std::make_unique<Voice>(Voice{std::move(reader), start, end, samples(part.start + part.fadeIn),
                                      samples(part.end - part.fadeOut), part.gain}));
    return true;
}

bool AudioMix::add(Voice& voice, AudioSamples& sum) {
    const auto channels = std::size_t(format_.channels);
    const std::size_t count = sum.size() / channels;
    AudioSamples piece(sum.size());
    if (!voice.reader->read(piece.data(), std::int64_t(count))) {
        error_ = voice.reader->error();
        return false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const float gain = voice.gainAt(position_ + std::int64_t(i));
        for (std::size_t c = 0; c < channels; ++c) sum[i * channels + c] += gain * piece[i * channels + c];
    }
    return true;
}

AudioSamples AudioMix::read(std::int64_t count) {
    if (!error_.empty() || count <= 0) return {};
    std::erase_if(voices_, [&](const auto& voice) { return voice->end <= position_; });
    for (; next_ < parts_.size() && samples(parts_[next_].start) <= position_; ++next_) {
        const AudioMixPart& part = parts_[next_];
        if (samples(part.end) > position_ && part.gain != 0 && !begin(part)) return {};
    }
    // Up to where the next one begins or one of these ends.
    std::int64_t until = position_ + count;
    if (next_ < parts_.size()) until = std::min(until, samples(parts_[next_].start));
    for (const auto& voice : voices_) until = std::min(until, voice->end);
    AudioSamples sum(std::size_t((until - position_) * format_.channels));
    for (const auto& voice : voices_) {
        if (!add(*voice, sum)) return {};
    }
    position_ = until;
    return sum;
}

}  // namespace qv
