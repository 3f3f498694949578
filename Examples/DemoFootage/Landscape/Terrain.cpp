#include <utility>

#include "Examples/DemoFootage/Landscape/World.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"

namespace qv::assets {
namespace {

constexpr float kNearest = 1500, kFarthest = 42000;
constexpr int kSteps = 1000;

struct Peak {
    float x, z, height, radius;
};
constexpr Peak kPeaks[] = {
    {1150, 7200, 1750, 3100},  {-1500, 8600, 1500, 2700},  {-3900, 6900, 1500, 2600},
    {4300, 7600, 1650, 2900},  {-6200, 12500, 2250, 4200}, {6900, 12500, 2300, 4600},
    {-700, 15500, 1900, 4200}, {2900, 17500, 2400, 5200},  {-11500, 24000, 2900, 7500},
    {700, 30000, 2700, 9000},  {12500, 27000, 3200, 9000}, {-3300, 26000, 2500, 6500},
    {-2300, 3900, 420, 1500},  {2700, 3600, 470, 1700},
};

/// Ridges whose steep flanks carry less detail than their crests, as erosion leaves them. 0..1.
float ridges(float x, float z, int octaves) {
    float sum = 0, weight = 0.5f, slopeX = 0, slopeZ = 0, crest = 1;
    for (int i = 0; i < octaves; ++i) {
        const NoiseSample n = noiseWithSlope(x, z, 200u + std::uint32_t(i));
        slopeX += weight * n.dx;
        slopeZ += weight * n.dy;
        const float ridge = 1 - std::abs(2 * n.value - 1);
        sum += weight * ridge * (0.35f + 0.65f * crest) / (1 + 0.6f * (slopeX * slopeX + slopeZ * slopeZ));
        crest = ridge;
        weight *= 0.46f;
        const float turned = 1.6f * x - 1.2f * z;
        z = 1.2f * x + 1.6f * z + 3.7f;
        x = turned;
    }
    return sum;
}

int mountainOctaves(float z) {
    return z < 9000 ? 11 : 9;
}

float mountainHeight(float x, float z, int octaves) {
    const float warpX = 620 * (noise(x / 1900, z / 1900, 301) - 0.5f);
    const float warpZ = 620 * (noise(x / 1900 + 40, z / 1900, 302) - 0.5f);
    float base = 0;
    for (const Peak& peak : kPeaks) {
        const float dx = (x + warpX - peak.x) / peak.radius, dz = (z + warpZ - peak.z) / peak.radius;
        const float d = std::sqrt(dx * dx + dz * dz);
        if (d < 1) base = std::max(base, peak.height * (1 - d) * (1 - 0.3f * d * (1 - d)));
    }
    const float rough = ridges(x / 1500, z / 1500, octaves) - 0.30f;
    return base * (0.80f + 0.25f * rough) + rough * (130 + 0.62f * std::min(base, 1500.0f));
}

/// How much of the sun reaches a point past the mountains between, 0..1.
float sunlight(Vec3 point) {
    float clear = 1;
    float along = 45;
    for (int i = 0; i < 12; ++i) {
        const float gap =
            point.y + kSunDirection.y * along -
            mountainHeight(point.x + kSunDirection.x * along, point.z + kSunDirection.z * along, 4);
        clear = std::min(clear, 0.5f + gap / (0.035f * along + 20));
        along *= 1.45f;
    }
    return smoothstep(0, 1, clear);
}

Lit mountainSurface(Vec3 point, float slopeX, float spacing) {
    const int octaves = mountainOctaves(point.z);
    const float e = std::max(spacing, 1.5f);
    const Vec3 normal = normalize({point.y - mountainHeight(point.x + e, point.z, octaves), e,
                                   point.y - mountainHeight(point.x, point.z + e, octaves)});

    const float patches = fractalNoise(point.x / 260, point.z / 260, 5, 401);
    const float grain = fractalNoise(point.x / 17, point.z / 17 + point.y / 9, 4, 402);
    const float strata = fractalNoise(point.x / 900, point.y / 26 + 3 * patches, 3, 403);
    Vec3 albedo = mix(Vec3{0.15f, 0.125f, 0.115f}, Vec3{0.34f, 0.27f, 0.22f}, 0.6f * strata + 0.4f * grain);
    const float green =
        smoothstep(0.55f, 0.78f, normal.y) * smoothstep(820, 430, point.y + 420 * (patches - 0.5f));
    albedo = mix(albedo, mix(Vec3{0.045f, 0.062f, 0.022f}, Vec3{0.20f, 0.17f, 0.055f}, grain), green);
    const float wood =
        smoothstep(430, 210, point.y + 330 * (patches - 0.5f)) * smoothstep(0.45f, 0.62f, normal.y);
    albedo = mix(albedo, Vec3{0.022f, 0.036f, 0.020f} * (0.55f + 0.9f * grain), wood);
    const float snow = smoothstep(690, 980, point.y + 520 * (patches - 0.5f) + 0.004f * point.z) *
                       smoothstep(0.48f, 0.66f, normal.y + 0.30f * (grain - 0.5f));
    albedo = mix(albedo, Vec3{0.80f, 0.83f, 0.90f}, snow);

    const Haze air = haze(slopeX, point.z, point.y);
    const float facing = std::max(0.0f, dot(normal, kSunDirection));
    const float open = 0.45f + 0.55f * normal.y;
    Lit lit;
    lit.alpha = 1;
    lit.ambient = (albedo * kSkyLight * open) * air.transmission + air.light;
    if (facing > 0)
        lit.sun = albedo * kSunLight * (facing * sunlight(point + Vec3{0, 4, 0}) * air.transmission);
    return lit;
}

}  // namespace

Layer drawMountains(const View& target, int margin) {
    const View view = target.scaled(2, margin);
    const int rows = std::min(view.height, int(view.horizon) + 8);
    Layer layer(view.width, rows / 2 * 2);
    parallelFor(view.width, [&](int column) {
        const float slopeX = view.slopeX(float(column) + 0.5f);
        const auto height = [&](float z) { return mountainHeight(slopeX * z, z, mountainOctaves(z)); };
        const float ratio = std::pow(kFarthest / kNearest, 1.0f / kSteps);
        // Nearest first: what a point hides is what it does not rise above.
        float top = float(layer.height()), lastRow = top, z = kNearest;
        for (int i = 0; i < kSteps && top > 0; ++i, z *= ratio) {
            const float row = view.row(height(z), z);
            const float last = std::exchange(lastRow, row);
            if (row >= top) continue;
            // A steep face takes many rows between two steps: look at each of them.
            const int pieces = std::clamp(int(0.7f * (last - row)), 1, 12);
            for (int piece = 1; piece <= pieces; ++piece) {
                const float at = z * std::pow(ratio, float(piece - pieces) / float(pieces));
                const float y = height(at), pieceRow = view.row(y, at);
                const int first = std::max(0, int(std::ceil(pieceRow - 0.5f))),
                          end = int(std::ceil(top - 0.5f));
                if (first >= end) continue;
                const Lit lit = mountainSurface({slopeX * at, y, at}, slopeX, 0.5f * at / view.focal);
                for (int filled = first; filled < end; ++filled) layer.at(column, filled) = lit;
                top = pieceRow;
            }
        }
    });
    return layer.halved();
}

}  // namespace qv::assets
