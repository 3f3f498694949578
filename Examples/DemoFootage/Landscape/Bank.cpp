#include "Examples/DemoFootage/Landscape/Foreground.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Stroke.h"

namespace qv::assets {
namespace {

float shoreDistance(float x) {
    return 10.2f + 8.5f * smoothstep(2.5f, -8, x) + 1.8f * (fractalNoise(x / 2.7f, 3.3f, 4, 901) - 0.5f);
}

Lit bankSurface(float x, float z, float height) {
    const float e = 0.05f;
    const Vec3 slope = normalize(
        {bankHeight(x - e, z) - bankHeight(x + e, z), 2 * e, bankHeight(x, z - e) - bankHeight(x, z + e)});
    const float fine = fractalNoise(x * 16, z * 16, 3, 911),
                coarse = fractalNoise(x * 1.3f, z * 1.3f, 4, 912);
    // Pebbles: the cell noise of a jittered grid, one grey for each stone.
    float nearest = 9, tone = 0, tilt = 0;
    const float scale = 9;
    const int cx = floorToInt(x * scale), cz = floorToInt(z * scale);
    for (int j = -1; j <= 1; ++j)
        for (int i = -1; i <= 1; ++i) {
            const float dx = float(cx + i) + hash01(cx + i, cz + j, 913) - x * scale;
            const float dz = float(cz + j) + hash01(cx + i, cz + j, 914) - z * scale;
            const float d = dx * dx + dz * dz;
            if (d < nearest) {
                nearest = d;
                tone = hash01(cx + i, cz + j, 915);
                tilt = dx;
            }
        }
    // Far away the stones are too flat to be told apart.
    const float stone = mix(0.6f, smoothstep(0.42f, 0.10f, nearest), smoothstep(13, 6, z));
    const Vec3 gravel = mix(Vec3{0.05f, 0.045f, 0.04f},
                            mix(Vec3{0.20f, 0.17f, 0.15f}, Vec3{0.38f, 0.33f, 0.29f}, tone), stone) *
                        (0.7f + 0.5f * fine);
    const Vec3 soil = mix(Vec3{0.045f, 0.050f, 0.018f}, Vec3{0.11f, 0.085f, 0.04f}, coarse) * (0.5f + fine);
    const float wet = smoothstep(0.07f, 0.0f, height);
    Vec3 albedo = mix(gravel, soil, smoothstep(0.12f, 0.42f, height + 0.35f * (coarse - 0.5f)));
    albedo *= 1 - 0.55f * wet;
    const float facing =
        std::max(0.0f, dot(slope, kSunDirection) + 0.16f + 0.5f * stone * tilt * (1 - 0.5f * coarse));
    return {albedo * kSkyLight * (0.45f + 0.5f * stone),
            albedo * kSunLight * (facing * (0.35f + 0.65f * stone)), 1};
}

/// A boulder: an oval whose surface bulges towards the camera and is roughened by noise.
void drawBoulder(const View& view, Layer& layer, float x, float z, float radius, std::uint32_t seed) {
    const float scale = view.focal / z, cx = view.column(x, z),
                base = view.row(std::max(bankHeight(x, z), -0.05f), z);
    const float rx = radius * scale, ry = rx * (0.55f + 0.25f * hash01(seed)), cy = base - 0.55f * ry;
    const float turn = 0.5f * (hash01(seed + 1) - 0.5f);
    for (int y = std::max(0, int(cy - ry * 1.3f)); y < std::min(layer.height(), int(base + 0.25f * ry)); ++y)
        for (int px = std::max(0, int(cx - rx * 1.3f)); px < std::min(layer.width(), int(cx + rx * 1.3f));
             ++px) {
            const float u0 = (float(px) + 0.5f - cx) / rx, v0 = (float(y) + 0.5f - cy) / ry;
            const float u = u0 + turn * v0, v = v0 - turn * u0;
            const NoiseSample rough = noiseWithSlope(2.1f * u + float(seed & 255), 2.1f * v, 921);
            const float r = std::sqrt(u * u + v * v) + 0.28f * (rough.value - 0.5f);
            const float alpha =
                clamp01((1 - r) * ry + 0.5f) * smoothstep(base + 0.25f * ry, base + 0.05f * ry, float(y));
            if (alpha <= 0) continue;
            const float bulge = std::sqrt(std::max(0.0f, 1 - std::min(r, 1.0f) * r));
            const NoiseSample fine = noiseWithSlope(9 * u + float(seed & 255), 9 * v, 922);
            const Vec3 normal = normalize({u - 0.5f * rough.dx - 0.12f * fine.dx,
                                           -v + 0.5f * rough.dy + 0.12f * fine.dy + 0.2f, -bulge - 0.2f});
            const float lichen =
                smoothstep(0.55f, 0.7f, fractalNoise(3 * u, 3 * v + float(seed & 63), 3, 923));
            const float grain = fractalNoise(14 * u, 14 * v, 3, 924 + (seed & 7));
            const Vec3 albedo =
                mix(mix(Vec3{0.13f, 0.12f, 0.115f}, Vec3{0.27f, 0.24f, 0.21f}, hash01(seed + 2)),
                    Vec3{0.30f, 0.27f, 0.12f}, 0.5f * lichen) *
                (0.55f + 0.9f * grain);
            const float damp = 1 - 0.6f * smoothstep(base - 0.25f * ry, base, float(y));
            layOver(layer.at(px, y),
                    Lit{albedo * kSkyLight * (damp * (0.35f + 0.5f * std::max(0.0f, normal.y))),
                        albedo * kSunLight * (damp * std::max(0.0f, dot(normal, kSunDirection))), 1} *
                        alpha);
        }
}

}  // namespace

float bankHeight(float x, float z) {
    const float shore = shoreDistance(x);
    const float toShore = z / shore;
    return 1.75f * (1 - toShore * std::sqrt(toShore)) +
           0.10f * (noise(x * 0.9f, z * 0.9f, 902) - 0.5f) * (1 - clamp01(toShore));
}

Layer drawBank(const View& target, int margin) {
    const View view = target.scaled(2, margin);
    Layer layer(view.width, view.height);
    parallelFor(view.width, [&](int column) {
        const float slopeX = view.slopeX(float(column) + 0.5f);
        float top = float(view.height);
        for (float z = 2.2f; z < 26; z *= 1.002f) {
            const float x = slopeX * z, height = bankHeight(x, z);
            if (height < 0) {
                top = std::min(top, view.row(0, z));
                continue;
            }
            const float row = view.row(height, z);
            if (row >= top) continue;
            const int first = std::max(0, int(std::ceil(row - 0.5f)));
            if (const int end = std::min(view.height, int(std::ceil(top - 0.5f))); first < end) {
                const Lit lit = bankSurface(x, z, height);
                for (int y = first; y < end; ++y) layer.at(column, y) = lit;
            }
            top = row;
        }
    });
    for (float z = 24; z > 4; z *= 0.982f)
        for (int i = 0; i < 9; ++i) {
            const std::uint32_t seed = hash32(i, int(z * 1000), 931);
            HashStream random(seed);
            const float x = z * random.range(-0.8f, 0.8f), height = bankHeight(x, z);
            if (height < -0.03f || height > 0.30f) continue;
            const float size = random.next();
            drawBoulder(view, layer, x, z, 0.05f + 0.34f * size * size * size, seed);
        }
    return layer.halved();
}

}  // namespace qv::assets
