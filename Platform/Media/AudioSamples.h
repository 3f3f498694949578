#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qv {

/// How sound is sampled.
struct AudioFormat {
    int sampleRate = 0, channels = 0;  ///< samples a second, of each channel
    std::string channelLayout;         ///< FFmpeg's name, such as "stereo"
    bool lossless = false;             ///< whether the file that it comes from holds every sample as it was
    bool operator==(const AudioFormat&) const = default;
};

/// A piece of sound: interleaved samples, full scale at ±1, `channels` a sample time. Pieces of a stream
/// follow each other without a gap.
using AudioSamples = std::vector<float>;

}  // namespace qv
