#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qv::assets {

/// Interleaved left and right, -1..1.
struct StereoSound {
    static constexpr int kRate = 48000;  ///< frames a second
    std::vector<float> samples;
};

/// Writes H.264 with AAC into an MP4 file, the same bytes for the same frames. Failures throw
/// std::runtime_error with a line that names file and cause.
class ClipFile {
  public:
    /// `crf`: the encoder's constant quality, less is better.
    ClipFile(const std::string& path, int width, int height, int framesPerSecond,
             const StereoSound* sound = nullptr, int crf = 20);
    ~ClipFile();

    /// Opaque RGBA8 rows without padding.
    void addFrame(const std::vector<std::uint8_t>& rgba);
    /// Adds the sound and completes the file.
    void finish();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace qv::assets
