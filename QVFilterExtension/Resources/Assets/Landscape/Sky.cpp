#include "QVFilterExtension/Resources/Assets/Landscape/World.h"
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

Cloud cumulus(float slopeX, float slopeY, float drift) {
    const float distance = 1.0f / (slopeY + 0.055f);
    const float x = slopeX * distance * 1.5f + drift, z = distance * 1.5f + 5.4f;
    const int octaves = 8;
    const float density = cloudDensity(x, z, octaves);
    if (density <= 0) return {0, 0};
    // Towards the sun the cloud's own bulk stands in the light.
    const float step = 0.11f;
    float shade = 0;
    for (int i = 1; i <= 3; ++i)
        shade += std::max(0.0f, cloudDensity(x - 0.9f * step * float(i), z - 0.25f * step * float(i), 5));
    return {1 - std::exp(-16.0f * density), std::exp(-5.5f * shade - 2.2f * density)};
}

/// Thin high streaks.
float cirrus(float slopeX, float slopeY, float drift) {
    const float distance = 1.0f / (slopeY + 0.12f);
    const float x = slopeX * distance + 0.4f * drift, z = distance;
    const float bend = fractalNoise(x * 0.5f, z * 0.5f, 3, 7);
    const float strands = fractalNoise(x * 0.9f + 1.5f * bend, z * 3.6f - x * 1.7f + 2.5f * bend, 6, 29);
    return smoothstep(0.5f, 0.85f, strands) *
           smoothstep(0.35f, 0.65f, fractalNoise(x * 0.3f, z * 0.4f, 2, 67));
}

Vec3 skyWithClouds(float slopeX, float slopeY, float drift) {
    Vec3 color = clearSky(slopeX, slopeY);
    const float warm = glow(slopeX, slopeY * 0.6f);
    const float high = 0.55f * cirrus(slopeX, slopeY, drift) * smoothstep(0.03f, 0.2f, slopeY);
    color = mix(color, mix(Vec3{0.95f, 0.80f, 0.80f}, Vec3{1.6f, 1.12f, 0.72f}, warm), high);
    const Cloud cloud = cumulus(slopeX, slopeY, drift);
    const Vec3 lit = mix(Vec3{1.25f, 0.86f, 0.66f}, Vec3{2.3f, 1.42f, 0.72f}, warm);
    const Vec3 shaded = mix(Vec3{0.25f, 0.27f, 0.40f}, Vec3{0.52f, 0.36f, 0.36f}, warm);
    const float near = smoothstep(0.015f, 0.17f, slopeY);
    return mix(color, mix(clearSky(slopeX, 0.03f), mix(shaded, lit, cloud.light), 0.25f + 0.75f * near),
               cloud.cover * smoothstep(0.0f, 0.09f, slopeY));
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

Raster<Vec3> drawSky(const View& view, double seconds, bool fast) {
    const int step = fast ? 2 : 1;
    const int rows = std::min(view.height, int(view.horizon) + 2);
    Raster<Vec3> coarse(view.width / step + 1, rows / step + 2);
    const float drift = 0.012f * float(seconds);
    parallelFor(coarse.height(), [&](int y) {
        for (int x = 0; x < coarse.width(); ++x)
            coarse.at(x, y) = skyWithClouds(view.slopeX((float(x) + 0.5f) * float(step)),
                                            view.slopeY((float(y) + 0.5f) * float(step)), drift);
    });
    if (!fast) return coarse;
    Raster<Vec3> sky(view.width, rows);
    parallelFor(rows, [&](int y) {
        for (int x = 0; x < view.width; ++x)
            sky.at(x, y) = coarse.sample((float(x) + 0.5f) * 0.5f, (float(y) + 0.5f) * 0.5f);
    });
    return sky;
}

}  // namespace qv::assets
