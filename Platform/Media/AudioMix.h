#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Media/AudioReader.h"

namespace qv {

/// A piece of a file's sound where it lies on a timeline. All in seconds.
struct AudioMixPart {
    std::string path;                ///< of a file with sound
    double origin = 0;               ///< what is heard at `start`, in the file's own time stamps
    double start = 0, end = 0;       ///< on the timeline
    double gain = 1;                 ///< factor
    double fadeIn = 0, fadeOut = 0;  ///< after `start` and before `end`
};

/// The sum of pieces of sound, each read when its time comes. One thread at a time.
///
/// Fades have equal power: the gains are the sine and the cosine of a quarter turn, so that two parts that
/// fade over the same time are a cross-fade.
class AudioMix {
  public:
    /// In any order. A file without sound is silent, and so is the time where none lies.
    AudioMix(const AudioFormat& format, std::vector<AudioMixPart> parts);
    ~AudioMix();

    /// The next samples of each channel, at least one and at most `count`; none after damage, with error()
    /// set.
    AudioSamples read(std::int64_t count);
    /// How many of each channel have been read.
    std::int64_t position() const { return position_; }
    /// Of what read() gives.
    const AudioFormat& format() const { return format_; }

    /// One line that names file and cause, once reading has failed.
    const std::string& error() const { return error_; }

  private:
    struct Voice;
    bool begin(const AudioMixPart& part);
    bool add(Voice& voice, AudioSamples& sum);
    std::int64_t samples(double seconds) const;

    AudioFormat format_;
    std::vector<AudioMixPart> parts_;
    std::size_t next_ = 0;                        ///< of the parts, to be heard
    std::vector<std::unique_ptr<Voice>> voices_;  ///< those that are heard
    std::int64_t position_ = 0;
    std::string error_;
};

}  // namespace qv
