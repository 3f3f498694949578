#include "Examples/DemoFootage/Landscape/World.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"

namespace qv::assets {
namespace {

/// 1 towards the evening glow at the left of the horizon, 0 far from it.
float glow(float slopeX, float slopeY) {
    const float across = slopeX + 0.75f;
    return std::exp(-0.9f * across * across - 5.0f * slopeY * slopeY);
}

struct Cloud {
    float cover, light;
};

/// A broken deck of cumulus seen from below, at (x, z) in cloud heights.
float cloudDensity(float x, float z, int octaves) {
    const float warp = fractalNoise(x * 0.55f + 3.1f, z * 0.55f, 3, 91);
    const float shape = fractalNoise(x + 1.3f * warp, z - 1.0f * warp, octaves, 17);
    const float presence = fractalNoise(x * 0.21f - 4.0f, z * 0.21f + 9.0f, 2, 53);
    return shape - mix(0.66f, 0.40f, presence);
}

// Both decks are planes overhead; a slope up leads to them after this way, in their heights. The term keeps
// the horizon finite, as the curve of the earth does.
float cumulusDistance(float slopeY) {
    return 1.5f / (slopeY + 0.055f);
}
float cirrusDistance(float slopeY) {
    return 1.0f / (slopeY + 0.12f);
}
constexpr float kCumulusSpeed = 0.08f, kCirrusSpeed = 0.03f;  // heights a second: a slight time lapse

Cloud cumulus(float slopeX, float slopeY) {
    const float distance = cumulusDistance(slopeY);
    const float x = slopeX * distance, z = distance + 5.4f;
    const float density = cloudDensity(x, z, 8);
    if (density <= 0) return {0, 0};
    // Towards the sun the cloud's own bulk stands in the light.
    const float step = 0.11f;
    float shade = 0;
    for (int i = 1; i <= 3; ++i)
        shade += std::max(0.0f, cloudDensity(x - 0.9f * step * float(i), z - 0.25f * step * float(i), 5));
    return {1 - std::exp(-16.0f * density), std::exp(-5.5f * shade - 2.2f * density)};
}

/// Thin high streaks.
float cirrus(float slopeX, float slopeY) {
    const float x = slopeX * cirrusDistance(slopeY), z = cirrusDistance(slopeY);
    const float bend = fractalNoise(x * 0.5f, z * 0.5f, 3, 7);
    const float strands = fractalNoise(x * 0.9f + 1.5f * bend, z * 3.6f - x * 1.7f + 2.5f * bend, 6, 29);
    return smoothstep(0.5f, 0.85f, strands) *
           smoothstep(0.35f, 0.65f, fractalNoise(x * 0.3f, z * 0.4f, 2, 67));
}

}  // namespace

Vec3 clearSky(float slopeX, float slopeY) {
    const float up = std::max(slopeY, 0.0f);
    const Vec3 zenith{0.05f, 0.13f, 0.38f}, middle{0.21f, 0.36f, 0.64f}, rim{0.66f, 0.52f, 0.50f};
    Vec3 color = mix(rim, middle, smoothstep(0.0f, 0.26f, up));
    color = mix(color, zenith, smoothstep(0.10f, 0.85f, up));
    return color + Vec3{1.25f, 0.58f, 0.10f} * (0.55f * glow(slopeX, up));
}

Haze haze(float slopeX, float distance, float height) {
    const float thickness = distance / 40000.0f * (0.7f + 1.1f * std::exp(-height / 420.0f));
    const float transmission = std::exp(-thickness);
    const Vec3 air = mix(Vec3{0.36f, 0.40f, 0.56f}, clearSky(slopeX, 0.02f), 0.55f);
    return {air * (1 - transmission), transmission};
}

Sky::Sky(const View& view, float seconds)
    : view_(view),
      rows_(std::min(view.height, int(view.horizon) + 2)),
      margin_(int(view.focal * kCumulusSpeed * seconds / cumulusDistance(view.slopeY(0))) + 1),
      air_(view.width, rows_),
      decks_(view.width + margin_, rows_) {
    parallelFor(rows_, [&](int y) {
        const float slopeY = view.slopeY(float(y) + 0.5f);
        for (int x = 0; x < decks_.width(); ++x) {
            const float slopeX = view.slopeX(float(x) + 0.5f);
            const Cloud cloud = cumulus(slopeX, slopeY);
            // Cover and light are joined so that the mean of two places is right.
            decks_.at(x, y) = {cloud.cover, cloud.cover * cloud.light, cirrus(slopeX, slopeY)};
            if (x < view.width) air_.at(x, y) = clearSky(slopeX, slopeY);
        }
    });
}

void Sky::draw(float seconds, Raster<Vec3>& picture) const {
    parallelFor(rows_, [&](int y) {
        const float slopeY = view_.slopeY(float(y) + 0.5f);
        const float near = smoothstep(0.015f, 0.17f, slopeY), low = smoothstep(0.0f, 0.09f, slopeY);
        const float high = 0.55f * smoothstep(0.03f, 0.2f, slopeY);
        const Shift lower(view_.focal * kCumulusSpeed * seconds / cumulusDistance(slopeY));
        const Shift upper(view_.focal * kCirrusSpeed * seconds / cirrusDistance(slopeY));
        for (int x = 0; x < view_.width; ++x) {
            const float slopeX = view_.slopeX(float(x) + 0.5f);
            const float warm = glow(slopeX, slopeY * 0.6f);
            const Vec3 deck = lower.of(decks_, x, y);
            Vec3 color = mix(air_.at(x, y), mix(Vec3{0.95f, 0.80f, 0.80f}, Vec3{1.6f, 1.12f, 0.72f}, warm),
                             high * upper.of(decks_, x, y).z);
            const Vec3 lit = mix(Vec3{1.30f, 0.86f, 0.62f}, Vec3{2.4f, 1.38f, 0.62f}, warm);
            const Vec3 shaded = mix(Vec3{0.21f, 0.24f, 0.38f}, Vec3{0.46f, 0.31f, 0.33f}, warm);
            const Vec3 cloud = shaded * (deck.x - deck.y) + lit * deck.y;
            const Vec3 seen = mix(clearSky(slopeX, 0.03f) * deck.x, cloud, 0.25f + 0.75f * near);
            picture.at(x, y) = color * (1 - deck.x * low) + seen * low;
        }
    });
}

}  // namespace qv::assets
