#pragma once

#include <cmath>
#include <cstring>
#include <numbers>
#include <string>
#include <vector>

#include "Tests/Media/ClipTools.h"
#include "Tests/Media/TemporaryFolder.h"

namespace qv {

/// The sound of a file as the command-line tool decodes it, interleaved. `more` are options of its output.
inline std::vector<float> decodedSound(const std::string& path, const std::string& more = "") {
    const TemporaryFolder folder;
    const std::string raw = folder / "sound.raw";
    ffmpeg("-i '" + path + "' -map 0:a:0 " + more + " -f f32le '" + raw + "'");
    const std::string bytes = readBytes(raw);
    std::vector<float> samples(bytes.size() / sizeof(float));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
    return samples;
}

/// How strong a tone is in `count` samples of a channel from `begin` on: its amplitude.
inline double toneAmplitude(const std::vector<float>& samples, int channels, int rate, double frequency,
                            std::size_t begin, std::size_t count) {
    double cosine = 0, sine = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double angle = 2 * std::numbers::pi * frequency * double(begin + i) / rate;
        const double sample = samples.at((begin + i) * std::size_t(channels));
        cosine += sample * std::cos(angle);
        sine += sample * std::sin(angle);
    }
    return 2 * std::hypot(cosine, sine) / double(count);
}

}  // namespace qv
