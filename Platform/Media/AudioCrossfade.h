#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Platform/Media/AudioReader.h"

namespace qv {

/// The sound of two clips that overlap: the first alone, both cross-faded, the second alone. One thread at a
/// time.
class AudioCrossfade {
  public:
    /// Seconds on the common timeline, which begins with the first clip.
    struct Span {
        double fadeStart = 0;  ///< where the second clip begins
        double fadeEnd = 0;    ///< where the first one ends
        double end = 0;        ///< where the second one ends
    };

    /// The readers are set to give sound of `format` from the beginning of their clips on; one without sound
    /// is nil and silent.
    AudioCrossfade(std::unique_ptr<AudioReader> first, std::unique_ptr<AudioReader> second,
                   const AudioFormat& format, const Span& span);

    /// Up to `count` more samples of each channel; empty at the end, and after damage, then with error() set.
    /// The fade has equal power: the gains are the cosine and the sine of a quarter turn.
    AudioSamples read(std::int64_t count);
    /// Seconds that have been read.
    double position() const { return double(position_) / format_.sampleRate; }

    /// One line that names file and cause, once reading has failed.
    const std::string& error() const { return error_; }

  private:
    bool add(AudioReader* reader, bool incoming, std::int64_t from, AudioSamples& sum);

    std::unique_ptr<AudioReader> first_, second_;
    AudioFormat format_;
    std::int64_t fadeStart_, fadeEnd_, end_, position_ = 0;
    std::string error_;
};

}  // namespace qv
