#pragma once

#include <cstdint>

#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

/// A camera's answer to linear light: soft shoulder and slight toe (Narkowicz's fit of the ACES curve), as an
/// sRGB code 0..1.
inline float filmCurve(float light) {
    const float v = std::max(light, 0.0f);
    const float developed = v * (2.51f * v + 0.03f) / (v * (2.43f * v + 0.59f) + 0.14f);
    const float linear = clamp01(developed);
    return linear <= 0.0031308f ? 12.92f * linear : 1.055f * std::pow(linear, 1 / 2.4f) - 0.055f;
}

/// `filmCurve` from a table, for whole frames.
class FilmTable {
  public:
    FilmTable() {
        for (int i = 0; i <= kSize; ++i) {
            const float root = float(i) / float(kSize);
            codes_[i] = 255 * filmCurve(kBrightest * root * root);
        }
    }
    /// 0..255.
    float operator()(float light) const {
        const float at = std::sqrt(std::clamp(light, 0.0f, kBrightest) / kBrightest) * float(kSize);
        const int i = std::min(int(at), kSize - 1);
        return mix(codes_[i], codes_[i + 1], at - float(i));
    }

  private:
    static constexpr int kSize = 2048;
    static constexpr float kBrightest = 8;
    float codes_[kSize + 1];
};

/// One opaque RGBA pixel of `light`, with grain of up to about `grain` codes that also hides banding.
inline void develop(const FilmTable& film, Vec3 light, int x, int y, std::uint32_t frame, float grain,
                    std::uint8_t* rgba) {
    const std::uint32_t h = hash32(x, y, frame);
    const float luma = float(h & 0xffff) / 65535.0f + float(h >> 16) / 65535.0f - 1;
    const std::uint32_t h2 = hash32(h);
    const float tint[3] = {float(h2 & 0x3ff) / 1023.0f - 0.5f, float(h2 >> 10 & 0x3ff) / 1023.0f - 0.5f,
                           float(h2 >> 20 & 0x3ff) / 1023.0f - 0.5f};
    const float lights[3] = {light.x, light.y, light.z};
    for (int c = 0; c < 3; ++c) {
        const float code = film(lights[c]) + grain * (luma + 0.6f * tint[c]);
        rgba[c] = std::uint8_t(std::clamp(code + 0.5f, 0.0f, 255.0f));
    }
    rgba[3] = 255;
}

}  // namespace qv::assets
