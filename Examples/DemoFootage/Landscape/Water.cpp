#include "Examples/DemoFootage/Landscape/Water.h"

#include <vector>

#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"

namespace qv::assets {
namespace {

struct Ripples {
    float slopeX = 0, slopeZ = 0;  ///< of what a pixel can show
    float blur = 0;                ///< slope of what it cannot
};

Ripples between(const Ripples& a, const Ripples& b, float t) {
    return {mix(a.slopeX, b.slopeX, t), mix(a.slopeZ, b.slopeZ, t), mix(a.blur, b.blur, t)};
}

/// How ruffled the water is: gusts leave long patches.
float windOver(float x, float z, float seconds) {
    const float gusts = fractalNoise(x / 55 + 0.02f * seconds, z / 160 - 0.02f * seconds, 3, 611);
    return 0.20f + 1.1f * smoothstep(0.38f, 0.78f, gusts);
}

Ripples ripples(float x, float z, float wind, float footprint, float seconds) {
    // Wavelength in metres, its slope, and where it travels.
    struct Wave {
        float length, slope, driftX, driftZ;
    };
    static constexpr Wave kWaves[] = {
        {0.17f, 0.009f, 0.2f, -0.25f}, {0.34f, 0.012f, 0.25f, -0.30f}, {0.8f, 0.013f, -0.3f, -0.45f},
        {1.7f, 0.012f, 0.5f, -0.7f},   {3.9f, 0.009f, 0.8f, -1.1f},    {11.0f, 0.006f, -0.9f, -1.5f},
    };
    Ripples sum;
    for (std::size_t i = 0; i < std::size(kWaves); ++i) {
        const Wave& wave = kWaves[i];
        const float visible = smoothstep(1.1f, 0.25f, footprint / wave.length);
        const float slope = wave.slope * wind;
        sum.blur += slope * (1 - visible);
        if (visible <= 0) continue;
        // Crests lie across the wind, each wavelength's a little differently; two trains that cross hide the
        // grid.
        const float px = (x + wave.driftX * seconds) / wave.length,
                    pz = (z + wave.driftZ * seconds) / wave.length;
        const float turn = 0.5f - 0.23f * float(i);
        const NoiseSample a = noiseWithSlope(0.62f * px + turn * pz, pz - turn * px, 620u + std::uint32_t(i));
        const NoiseSample b =
            noiseWithSlope(0.8f * px - 0.5f * pz, 0.9f * pz + 0.5f * px, 630u + std::uint32_t(i));
        sum.slopeX += slope * visible * (0.62f * a.dx - turn * a.dy + 0.8f * b.dx + 0.5f * b.dy);
        sum.slopeZ += slope * visible * (a.dy + turn * a.dx + 0.9f * b.dy - 0.5f * b.dx);
    }
    return sum;
}

}  // namespace

void drawWater(const View& view, float waterline, double seconds, const NearbyMirror& nearby,
               Raster<Vec3>& picture) {
    const int first = int(waterline);
    parallelFor(view.height - first, [&](int i) {
        const int y = first + i;
        const float down = std::max(float(y) + 0.5f - view.horizon, 0.5f);
        const float z = view.cameraY * view.focal / down;
        const float footprint = z * z / (view.cameraY * view.focal);
        const float cover = clamp01(float(y) + 1 - waterline);
        const float grazing = down / std::sqrt(down * down + view.focal * view.focal);
        const float shallow = smoothstep(26, 8, z);
        // Ripples are longer than two pixels wherever they can be seen at all.
        std::vector<Ripples> row(std::size_t(view.width / 2 + 2));
        float wind = 0, nextWind = 0;
        for (std::size_t k = 0; k < row.size(); ++k) {
            constexpr std::size_t kWindStep = 16;
            const auto worldX = [&](std::size_t at) { return view.cameraX + view.slopeX(2 * float(at)) * z; };
            if (k % kWindStep == 0) {
                wind = k ? nextWind : windOver(worldX(k), z, float(seconds));
                nextWind = windOver(worldX(k + kWindStep), z, float(seconds));
            }
            row[k] = ripples(worldX(k), z, mix(wind, nextWind, float(k % kWindStep) / float(kWindStep)),
                             footprint, float(seconds));
        }
        const bool hasNearby = y < nearby.layer.height() && nearby.rows[std::size_t(y)];
        for (int x = 0; x < view.width; ++x) {
            const float worldX = view.cameraX + view.slopeX(float(x) + 0.5f) * z;
            const Ripples r =
                between(row[std::size_t(x / 2)], row[std::size_t(x / 2 + 1)], x % 2 ? 0.75f : 0.25f);
            const float mirrored = 2 * waterline - (float(y) + 0.5f);
            // A ripple tilts the mirror by its slope and the mirrored ray by twice that.
            const float sourceX = float(x) + 0.5f + 2 * view.focal * r.slopeX * grazing;
            const Shift across(sourceX - 0.5f - float(x));
            Vec3 reflection;
            constexpr int kTaps = 4;
            for (int tap = 0; tap < kTaps; ++tap) {
                const float spread = r.blur * (float(tap) / (kTaps - 1) - 0.5f) * 1.2f;
                const float sourceY = mirrored - 2 * view.focal * (r.slopeZ + 0.6f * r.blur + spread);
                // Only rows above the water: those below are being written.
                const int source = int(waterline - 0.5f - std::abs(waterline - 0.5f - sourceY));
                reflection += across.of(picture, x, std::min(source, first - 1)) * (1.0f / kTaps);
            }
            if (hasNearby) {
                // What stands close over the water is hardly shifted.
                const float own = nearby.margin + view.focal * view.cameraX / z;
                const Lit near =
                    nearby.layer.sample(float(x) + 0.5f + own + 0.5f * view.focal * r.slopeX * grazing,
                                        float(y) + 0.5f - 0.35f * view.focal * r.slopeZ);
                reflection = reflection * (1 - near.alpha) + near.ambient + near.sun * nearby.sun;
            }
            const float cosine = clamp01(grazing - r.slopeZ);
            const float steep = (1 - cosine) * (1 - cosine);
            const float fresnel = 0.03f + 0.97f * steep * steep * (1 - cosine);  // Schlick
            const float bed =
                shallow > 0 ? fractalNoise(worldX * 2.3f + 9 * r.slopeX, z * 2.3f + 9 * r.slopeZ, 4, 640)
                            : 0.0f;
            const Vec3 body = mix(Vec3{0.012f, 0.050f, 0.066f}, Vec3{0.085f, 0.095f, 0.060f} * (0.5f + bed),
                                  shallow * 0.7f);
            picture.at(x, y) = mix(picture.at(x, y), mix(body, reflection, fresnel), cover);
        }
    });
}

}  // namespace qv::assets
