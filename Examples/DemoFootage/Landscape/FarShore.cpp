#include <vector>

#include "Examples/DemoFootage/Landscape/World.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"

namespace qv::assets {
namespace {

constexpr float kShore = 850, kDepth = 700;

float shoreline(float x) {
    return kShore + 130 * (fractalNoise(x / 330, 5, 4, 501) - 0.45f);
}

float hillHeight(float x, float z) {
    const float inland = z - shoreline(x);
    if (inland <= 0) return -1;
    const float spurs = 62 * smoothstep(-150, -560, x) + 48 * smoothstep(230, 620, x);
    return 1.2f + 0.035f * inland + spurs * smoothstep(0, 420, inland) +
           16 * (fractalNoise(x / 160, z / 160, 4, 502) - 0.5f) * smoothstep(0, 120, inland);
}

Lit inAir(Vec3 ambient, Vec3 sun, const Haze& air, float alpha) {
    return Lit{ambient * air.transmission + air.light, sun * air.transmission, 1} * alpha;
}

void drawHill(const View& view, Layer& layer) {
    parallelFor(view.width, [&](int column) {
        const float slopeX = view.slopeX(float(column) + 0.5f);
        float top = float(layer.height());
        for (float z = kShore - 90; z < kShore + kDepth; z += 1 + 0.002f * z) {
            const float x = slopeX * z, height = hillHeight(x, z);
            if (height < 0) {
                top = std::min(top, view.row(0, z));
                continue;
            }
            const float row = view.row(height, z);
            if (row >= top) continue;
            const float grain = fractalNoise(x / 3, z / 6, 3, 510),
                        patches = fractalNoise(x / 40, z / 60, 3, 511);
            const float stones = smoothstep(14, 3, z - shoreline(x));
            Vec3 albedo =
                mix(Vec3{0.07f, 0.085f, 0.025f}, Vec3{0.24f, 0.20f, 0.07f}, patches) * (0.6f + 0.8f * grain);
            albedo = mix(albedo, Vec3{0.33f, 0.29f, 0.25f} * (0.5f + grain), stones);
            const float e = 4;
            const Vec3 normal = normalize({hillHeight(x - e, z) - hillHeight(x + e, z), 2 * e,
                                           hillHeight(x, z - e) - hillHeight(x, z + e)});
            const float facing = std::max(0.0f, dot(normal, kSunDirection));
            const Haze air = haze(slopeX, z, height);
            const Lit lit = inAir(albedo * kSkyLight * 0.8f, albedo * kSunLight * facing, air, 1);
            for (int y = std::max(0, int(std::ceil(row - 0.5f)));
                 y < std::min(layer.height(), int(std::ceil(top - 0.5f))); ++y)
                layer.at(column, y) = lit;
            top = row;
        }
    });
}

/// A spruce, tiers of boughs that catch the sun on the left.
void drawSpruce(const View& view, Layer& layer, Vec3 foot, float height, std::uint32_t seed) {
    const float bottom = view.row(foot.y - 0.5f, foot.z), pixels = height * view.focal / foot.z;
    const float center = view.column(foot.x, foot.z);
    const Haze air = haze(view.slopeX(center), foot.z, foot.y);
    HashStream random(seed);
    const float spread = random.range(0.10f, 0.20f), tiers = random.range(7, 12),
                lean = random.range(-0.02f, 0.02f);
    Vec3 albedo = mix(Vec3{0.020f, 0.038f, 0.020f}, Vec3{0.070f, 0.078f, 0.022f}, random.next());
    // Larches turn gold, in groups.
    if (fractalNoise(foot.x / 45, foot.z / 60, 2, 530) + 0.25f * random.next() > 0.76f)
        albedo = mix(Vec3{0.20f, 0.13f, 0.020f}, Vec3{0.34f, 0.17f, 0.022f}, random.next());
    albedo *= random.range(0.65f, 1.25f);
    for (int y = std::max(0, int(bottom - pixels)); y < std::min(layer.height(), int(bottom)); ++y) {
        const float down = (float(y) + 0.5f - (bottom - pixels)) / pixels;
        const float tier = down * tiers - std::floor(down * tiers);
        const float jag = 0.62f + 0.38f * tier + 0.25f * (hash01(y, int(seed), 5) - 0.5f);
        const float half = pixels * spread * std::pow(down, 0.85f) * jag;
        const float axis = center + lean * pixels * (1 - down);
        for (int x = std::max(0, int(axis - half)); x <= std::min(layer.width() - 1, int(axis + half)); ++x) {
            const float across = (float(x) + 0.5f - axis) / std::max(half, 0.5f);
            const float alpha = smoothstep(1.15f, 0.75f, std::abs(across));
            const float leaf = 0.45f + 1.1f * hash01(x, y, seed);
            const float facing = clamp01(0.42f - 0.62f * across) * (0.45f + 0.75f * tier);
            layOver(layer.at(x, y), inAir(albedo * kSkyLight * (leaf * (0.4f + 0.4f * tier)),
                                          albedo * kSunLight * (leaf * facing), air, alpha));
        }
    }
}

}  // namespace

Layer drawFarShore(const View& target, int margin) {
    const View view = target.scaled(2, margin);
    Layer layer(view.width, std::min(view.height, int(view.row(-1, kShore - 90)) + 2) / 2 * 2);
    drawHill(view, layer);
    for (float z = kShore + kDepth; z > kShore - 80; z -= 7.5f) {
        const int row = int(z / 7.5f);
        const int half = int(z * 0.5f * float(view.width) / view.focal / 7.5f) + 2;
        for (int i = -half; i <= half; ++i) {
            const std::uint32_t seed = hash32(i, row, 520);
            HashStream random(seed);
            const float x = (float(i) + random.range(-0.7f, 0.7f)) * 7.5f, depth = z + random.range(-3, 3);
            const float inland = depth - shoreline(x);
            const float wood = fractalNoise(x / 120, depth / 150, 3, 521) +
                               0.22f * smoothstep(0.1f, 0.5f, std::abs(x) / depth);
            if (inland < 6 || random.next() > smoothstep(0.46f, 0.60f, wood)) continue;
            drawSpruce(view, layer, {x, hillHeight(x, depth), depth},
                       random.range(6, 15) * (0.65f + 1.1f * fractalNoise(x / 25, depth / 40, 2, 522)) +
                           9 * std::pow(random.next(), 6.0f),
                       seed);
        }
    }
    return layer.halved();
}

}  // namespace qv::assets
