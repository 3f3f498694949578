#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Platform/Media/AudioSamples.h"

namespace qv {

/// Decodes a clip's sound and resamples it, in step with the clip's pictures to the sample. One thread at a
/// time.
class AudioReader {
  public:
    /// Takes the stream that players take. Nil when there is no sound in the file, then with `error` left
    /// empty, and on failure, then with one line that names file and cause.
    static std::unique_ptr<AudioReader> open(const std::string& path, std::string* error);
    ~AudioReader();

    /// As the file has it.
    const AudioFormat& format() const;

    /// Says what read() gives: sound of another rate or layout, from `origin` on, seconds of the file's own
    /// time stamps. Before the first read(). False when there is no way to that format.
    bool convertTo(const AudioFormat& wanted, double origin);

    /// The next `count` samples of each channel, interleaved. Where the file has none (before its sound
    /// begins, in gaps, after the end) there is silence. False after damage, with error() set.
    bool read(float* samples, std::int64_t count);

    /// One line that names file and cause, once reading has failed.
    const std::string& error() const;

  private:
    struct State;
    explicit AudioReader(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace qv
