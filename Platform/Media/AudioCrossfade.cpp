#include "Platform/Media/AudioCrossfade.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qv {

AudioCrossfade::AudioCrossfade(std::unique_ptr<AudioReader> first, std::unique_ptr<AudioReader> second,
                               const AudioFormat& format, const Span& span)
    : first_(std::move(first)),
      second_(std::move(second)),
      format_(format),
      fadeStart_(std::llround(span.fadeStart * format.sampleRate)),
      fadeEnd_(std::llround(span.fadeEnd * format.sampleRate)),
      end_(std::llround(span.end * format.sampleRate)) {}

/// Adds one clip's sound to the samples from `from` on, which lie in one part of the timeline.
bool AudioCrossfade::add(AudioReader* reader, bool incoming, std::int64_t from, AudioSamples& sum) {
    const bool fading = from >= fadeStart_ && from < fadeEnd_;
    const bool heard = fading || incoming == (from >= fadeEnd_);
    if (!reader || !heard) return true;
    const std::size_t channels = std::size_t(format_.channels);
    const std::size_t count = sum.size() / channels;
    AudioSamples samples(sum.size());
    if (!reader->read(samples.data(), std::int64_t(count))) {
        error_ = reader->error();
        return false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        float gain = 1;
        if (fading) {
            const double passed =
                (double(from + std::int64_t(i) - fadeStart_) + 0.5) / double(fadeEnd_ - fadeStart_);
            const double angle = passed * std::numbers::pi / 2;
            gain = float(incoming ? std::sin(angle) : std::cos(angle));
        }
        for (std::size_t c = 0; c < channels; ++c) sum[i * channels + c] += gain * samples[i * channels + c];
    }
    return true;
}

AudioSamples AudioCrossfade::read(std::int64_t count) {
    if (!error_.empty() || position_ >= end_) return {};
    // One part of the timeline at a time.
    const std::int64_t partEnd = position_ < fadeStart_ ? fadeStart_ : position_ < fadeEnd_ ? fadeEnd_ : end_;
    const std::int64_t taken = std::min(count, std::min(partEnd, end_) - position_);
    AudioSamples sum(std::size_t(taken * format_.channels));
    const bool read = add(first_.get(), false, position_, sum) && add(second_.get(), true, position_, sum);
    if (!read) return {};
    position_ += taken;
    return sum;
}

}  // namespace qv
