#include <numbers>

#include "QVFilterExtension/Resources/Assets/PhotoDissolves/PhotoDissolves.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

namespace {

constexpr float kPi = std::numbers::pi_v<float>;

/// An opening between blades that turn as they draw back; its corners are a little round.
float irisOfBlades(float x, float y, float r) {
    constexpr int kBlades = 7;
    const float twist = 0.9f * r;
    float sum = 0;
    for (int i = 0; i < kBlades; ++i) {
        const float angle = 2 * kPi * float(i) / kBlades + twist;
        const float out = x * std::cos(angle) + y * std::sin(angle);
        sum += std::pow(std::max(out, 0.0f) / std::max(r, 1e-6f), 40.0f);
    }
    return r * std::pow(sum, 1 / 40.0f);
}

/// Noise around a circle, without a seam; 0..1.
float around(float x, float y, float r, float frequency, std::uint32_t seed) {
    const float k = frequency / std::max(r, 1e-6f);
    return noise(x * k + 50, y * k + 50, seed);
}

/// Rays of different lengths.
float burst(float x, float y, float r) {
    const float rays =
        0.55f * around(x, y, r, 5, 3) + 0.30f * around(x, y, r, 13, 4) + 0.15f * around(x, y, r, 31, 5);
    return r / (0.25f + 1.6f * rays * rays);
}

}  // namespace

TimeField radial(int index) {
    return fieldOf([index](Place place) {
        const float x = place.x - 0.5f * kAspect, y = place.y - 0.5f, r = std::hypot(x, y);
        switch (index) {
            case 0:
                return irisOfBlades(x, y, r);
            case 1:
                return std::abs(std::atan2(x, -y)) / kPi + 0.10f * r;
            case 2:
                return burst(x, y, r);
            default:
                return r + 0.13f * std::cos(3 * std::atan2(y, x) - 7 * std::log(r + 0.12f));
        }
    });
}

}  // namespace qv::assets
