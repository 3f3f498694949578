#pragma once

#include <cstdint>

namespace qv::assets {

/// Integer hashes (the multipliers are those of C. Wellons's low-bias search), so that every machine draws
/// the same picture.
inline std::uint32_t hash32(std::uint32_t v) {
    v ^= v >> 16;
    v *= 0x7feb352du;
    v ^= v >> 15;
    v *= 0x846ca68bu;
    return v ^ (v >> 16);
}
inline std::uint32_t hash32(int x, int y, std::uint32_t seed = 0) {
    return hash32(std::uint32_t(x) * 0x9e3779b1u ^ hash32(std::uint32_t(y) + seed * 0x85ebca77u));
}
/// 0..1.
inline float hash01(std::uint32_t v) {
    return float(hash32(v) >> 8) * (1.0f / 16777216.0f);
}
inline float hash01(int x, int y, std::uint32_t seed = 0) {
    return float(hash32(x, y, seed) >> 8) * (1.0f / 16777216.0f);
}

/// Draws numbers one after another.
class HashStream {
  public:
    explicit HashStream(std::uint32_t seed) : state_(hash32(seed + 0x51ed270bu)) {}
    /// 0..1.
    float next() { return hash01(state_ += 0x9e3779b9u); }
    float range(float low, float high) { return low + (high - low) * next(); }

  private:
    std::uint32_t state_;
};

/// `std::floor` for the range of int, without its call.
inline int floorToInt(float v) {
    const int toZero = int(v);
    return toZero - int(v < float(toZero));
}

struct NoiseSample {
    float value;   ///< 0..1
    float dx, dy;  ///< derivatives
};

/// Value noise of unit cell with quintic interpolation.
inline NoiseSample noiseWithSlope(float x, float y, std::uint32_t seed = 0) {
    const int ix = floorToInt(x), iy = floorToInt(y);
    const float u = x - float(ix), v = y - float(iy);
    const float a = hash01(ix, iy, seed), b = hash01(ix + 1, iy, seed);
    const float c = hash01(ix, iy + 1, seed), d = hash01(ix + 1, iy + 1, seed);
    const float su = u * u * u * (u * (u * 6 - 15) + 10), sv = v * v * v * (v * (v * 6 - 15) + 10);
    const float du = 30 * u * u * (u * (u - 2) + 1), dv = 30 * v * v * (v * (v - 2) + 1);
    const float k = a - b - c + d;
    return {a + (b - a) * su + (c - a) * sv + k * su * sv, du * (b - a + k * sv), dv * (c - a + k * su)};
}
inline float noise(float x, float y, std::uint32_t seed = 0) {
    return noiseWithSlope(x, y, seed).value;
}

/// Fractal sum of `octaves`, each half as strong and about twice as fine, turned to hide the grid. 0..1.
inline float fractalNoise(float x, float y, int octaves, std::uint32_t seed = 0) {
    float sum = 0, weight = 0.5f, total = 0;
    for (int i = 0; i < octaves; ++i) {
        sum += weight * noise(x, y, seed + std::uint32_t(i));
        total += weight;
        weight *= 0.5f;
        const float turned = 1.6f * x - 1.2f * y;
        y = 1.2f * x + 1.6f * y + 7.3f;
        x = turned;
    }
    return sum / total;
}

}  // namespace qv::assets
