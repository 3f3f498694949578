#include <vector>

#include "Examples/DemoFootage/Landscape/Foreground.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Stroke.h"

namespace qv::assets {
namespace {

constexpr float kNearest = 2.6f, kFarthest = 24;

enum class Flower { none, poppy, daisy, lupin, seeds };

struct Plant {
    float x, z, ground, height, lean, width;
    Vec3 foot, tip;  ///< albedo
    Flower flower;
    std::uint32_t seed;
};

/// Far plants first. The meadow is the same for every view.
const std::vector<Plant>& plants() {
    static const std::vector<Plant> all = [] {
        std::vector<Plant> grown;
        // Bands of depth, each with as many plants to a metre of picture as the one before.
        for (float z = kFarthest; z > kNearest; z *= 0.985f) {
            const int row = int(4096 * std::log(z));
            const int count = int(190 * (0.6f + 0.4f * smoothstep(20, 6, z)));
            for (int i = 0; i < count; ++i) {
                const std::uint32_t seed = hash32(i, row, 801);
                HashStream random(seed);
                Plant plant;
                plant.seed = seed;
                plant.z = z * random.range(0.985f, 1.0f);
                plant.x = plant.z * random.range(-0.85f, 0.85f);
                plant.ground = bankHeight(plant.x, plant.z);
                const float patches = fractalNoise(plant.x / 1.7f, plant.z / 2.6f, 3, 802);
                if (plant.ground < 0.10f + 0.25f * random.next() ||
                    random.next() > smoothstep(0.28f, 0.5f, patches) + 0.1f)
                    continue;
                plant.height = random.range(0.16f, 0.46f) * (0.65f + 0.9f * patches);
                plant.lean = random.range(-0.45f, 0.6f) * plant.height;
                plant.width = random.range(0.006f, 0.013f);
                const float dry =
                    clamp01(2.2f * (fractalNoise(plant.x / 3.1f, plant.z / 3.1f, 3, 803) - 0.42f)) *
                    random.next();
                plant.foot = Vec3{0.030f, 0.052f, 0.014f};
                plant.tip = mix(Vec3{0.10f, 0.19f, 0.035f}, Vec3{0.42f, 0.32f, 0.12f}, dry) *
                            random.range(0.65f, 1.25f);
                plant.flower = Flower::none;
                const float bloom = random.next();
                const float drift = fractalNoise(plant.x / 1.9f + 11, plant.z / 1.9f, 2, 804);
                if (bloom < 0.030f * smoothstep(0.40f, 0.6f, drift))
                    plant.flower = Flower::poppy;
                else if (bloom < 0.05f && drift < 0.46f)
                    plant.flower = Flower::daisy;
                else if (bloom > 0.984f && drift < 0.5f)
                    plant.flower = Flower::lupin;
                else if (bloom > 0.90f && bloom < 0.94f)
                    plant.flower = Flower::seeds;
                if (plant.flower != Flower::none) {
                    plant.height = random.range(0.36f, 0.56f);
                    plant.lean *= 0.4f;
                    plant.width = 0.008f;
                }
                grown.push_back(plant);
            }
        }
        return grown;
    }();
    return all;
}

/// A part of the picture that one thread paints.
struct Strip {
    Raster<Vec3>& picture;
    int left, right;

    void cover(int x, int y, Vec3 color, float alpha) const {
        if (x < left || x >= right || y < 0 || y >= picture.height()) return;
        Vec3& pixel = picture.at(x, y);
        pixel = mix(pixel, color, alpha);
    }
    /// A shaded oval, lit from the upper left.
    void oval(float cx, float cy, float rx, float ry, float turn, Vec3 light, Vec3 shade) const {
        const float reach = std::max(rx, ry) + 1, c = std::cos(turn), s = std::sin(turn);
        for (int y = int(cy - reach); y <= int(cy + reach); ++y)
            for (int x = int(cx - reach); x <= int(cx + reach); ++x) {
                const float dx = float(x) + 0.5f - cx, dy = float(y) + 0.5f - cy;
                const float u = (c * dx + s * dy) / rx, v = (c * dy - s * dx) / ry;
                const float d = std::sqrt(u * u + v * v);
                const float alpha = clamp01((1 - d) * std::min(rx, ry) + 0.5f);
                if (alpha > 0)
                    cover(x, y, mix(light, shade, clamp01(0.5f + 0.35f * (dx + dy) / reach + 0.25f * d)),
                          alpha);
            }
    }
};

struct Light {
    Vec3 sun, sky;
    Vec3 on(Vec3 albedo, float facing, float open) const { return albedo * (sun * facing + sky * open); }
};

void drawFlower(const Strip& strip, const Plant& plant, float x, float y, float scale, const Light& light) {
    HashStream random(plant.seed ^ 0x5bd1e995u);
    const auto petal = [&](float dx, float dy, float rx, float ry, float turn, Vec3 albedo) {
        strip.oval(x + dx * scale, y + dy * scale, std::max(rx * scale, 0.7f), std::max(ry * scale, 0.7f),
                   turn, light.on(albedo, 0.75f, 0.9f), light.on(albedo, 0.22f, 0.6f));
    };
    switch (plant.flower) {
        case Flower::poppy: {
            // A cup of four ragged petals, seen more or less from the side.
            const Vec3 red = Vec3{0.60f, 0.022f, 0.008f} * random.range(0.75f, 1.15f);
            const float size = random.range(0.020f, 0.034f) * scale, tilt = random.range(0.45f, 0.95f);
            const float turn = random.range(0, 6.2832f), nod = random.range(-0.5f, 0.5f);
            const float cx = x + 0.4f * nod * size, cy = y - 0.2f * size;
            for (int py = int(cy - 1.3f * size) - 1; py <= int(cy + 1.3f * size) + 1; ++py)
                for (int px = int(cx - 1.3f * size) - 1; px <= int(cx + 1.3f * size) + 1; ++px) {
                    const float dx = (float(px) + 0.5f - cx) / size, dy = (float(py) + 0.5f - cy) / size;
                    const float u = dx + 0.3f * nod * dy, v = (dy - 0.3f * nod * dx) / tilt;
                    const float r = std::sqrt(u * u + v * v), angle = std::atan2(v, u) + turn;
                    const float edge = 1 + 0.10f * std::cos(4 * angle) + 0.07f * std::sin(9 * angle + turn);
                    const float alpha = clamp01((edge - r) * size * tilt + 0.5f);
                    if (alpha <= 0) continue;
                    const float fold = 0.5f + 0.5f * std::cos(4 * angle + 0.6f * r);
                    const float pleat = 0.85f + 0.3f * noise(angle * 9, r * 1.5f, 806);
                    const float facing =
                        clamp01(0.55f - 0.35f * u - 0.25f * v) * pleat * (0.55f + 0.45f * fold);
                    Vec3 albedo = red * (0.55f + 0.6f * r);
                    albedo = mix(albedo, Vec3{0.012f, 0.010f, 0.014f}, smoothstep(0.42f, 0.25f, r) * 0.9f);
                    albedo = mix(albedo, Vec3{0.16f, 0.17f, 0.07f}, smoothstep(0.16f, 0.08f, r));
                    strip.cover(px, py, light.on(albedo, facing, 0.4f + 0.5f * r), alpha);
                }
            break;
        }
        case Flower::daisy: {
            const int petals = 11;
            const float tilt = random.range(0.55f, 0.9f), start = random.next();
            for (int i = 0; i < petals; ++i) {
                const float angle = 6.2832f * (float(i) + start) / float(petals);
                petal(0.014f * std::cos(angle), 0.014f * tilt * std::sin(angle), 0.0095f, 0.0042f,
                      std::atan2(tilt * std::sin(angle), std::cos(angle)), {0.62f, 0.62f, 0.60f});
            }
            petal(0, 0, 0.0065f, 0.0055f, 0, {0.60f, 0.36f, 0.02f});
            break;
        }
        case Flower::lupin: {
            const Vec3 color = mix(Vec3{0.16f, 0.055f, 0.42f}, Vec3{0.36f, 0.08f, 0.40f}, random.next());
            const int rings = 15;
            for (int i = rings; i >= 0; --i) {
                const float up = float(i) / rings, radius = 0.017f * (1.1f - up) * random.range(0.7f, 1.2f);
                for (int j = 0; j < 3; ++j)
                    if (random.next() < 0.85f)
                        petal(radius * (float(j) - 1) + random.range(-0.002f, 0.002f), -0.17f * up,
                              0.0075f * (1.1f - 0.6f * up), 0.0065f, 0.5f * (float(j) - 1),
                              mix(color, Vec3{0.30f, 0.30f, 0.42f}, 0.5f * up) * random.range(0.75f, 1.25f));
            }
            break;
        }
        case Flower::seeds:
            for (int i = 0; i < 12; ++i) {
                const float up = float(i) / 11;
                petal(0.006f * (i % 2 ? 1.0f : -1.0f) * (1 - up), -0.085f * up, 0.0032f, 0.008f,
                      i % 2 ? 0.35f : -0.35f, Vec3{0.46f, 0.34f, 0.15f} * random.range(0.8f, 1.2f));
            }
            break;
        case Flower::none:
            break;
    }
}

void drawPlant(const View& view, const Strip& strip, const Plant& plant, float seconds, const Light& light) {
    const float scale = view.focal / plant.z;
    const float footX = view.column(plant.x, plant.z), footY = view.row(plant.ground, plant.z);
    const float tall = plant.height * scale,
                reach = std::abs(plant.lean * scale) + 0.6f * tall + 0.06f * scale;
    if (footX + reach < float(strip.left) || footX - reach > float(strip.right) ||
        footY - tall > float(view.height) + 0.2f * scale)
        return;
    const float gust = fractalNoise(0.35f * plant.x - 0.55f * seconds, 0.35f * plant.z, 2, 805) - 0.45f;
    const float flutter = 0.03f * std::sin(5.1f * seconds + float(plant.seed & 1023));
    const float lean = (plant.lean + plant.height * (0.75f * gust + flutter)) * scale;
    const float drop = 0.22f * lean * lean / std::max(tall, 1.0f), top = footY - tall + drop;
    const float full = std::max(0.5f * plant.width * scale, 0.45f);
    const float sheen = 0.45f + 0.55f * hash01(plant.seed);
    const float haze = 0.10f * smoothstep(8, 24, plant.z);
    for (int y = std::max(0, int(top)); y < std::min(view.height, int(footY) + 1); ++y) {
        const float up = clamp01((footY - (float(y) + 0.5f)) / (footY - top));
        const float x = footX + lean * up * up;
        const float half = plant.flower == Flower::none
                               ? full * std::sqrt(1 - up) * (0.55f + 0.45f * (1 - up))
                               : 0.6f * full;
        const Vec3 albedo = mix(plant.foot, plant.tip, smoothstep(0.05f, 0.85f, up));
        Vec3 color = light.on(albedo, up * sheen * 0.85f, 0.25f + 0.75f * up);
        color = mix(color, Vec3{0.42f, 0.38f, 0.38f}, haze);
        const float from = x - half, to = x + half;
        for (int px = int(from); px <= int(to); ++px)
            strip.cover(px, y, color, clamp01(std::min(to, float(px + 1)) - std::max(from, float(px))));
    }
    if (plant.flower != Flower::none) drawFlower(strip, plant, footX + lean, top, scale, light);
}

}  // namespace

void drawMeadow(const View& view, double seconds, float sun, Raster<Vec3>& picture) {
    const Light light{kSunLight * (0.62f * sun), kSkyLight * 1.1f};
    constexpr int kStripWidth = 160;
    const int strips = (view.width + kStripWidth - 1) / kStripWidth;
    plants();
    parallelFor(
        strips,
        [&](int i) {
            const Strip strip{picture, i * kStripWidth, std::min((i + 1) * kStripWidth, view.width)};
            for (const Plant& plant : plants()) drawPlant(view, strip, plant, float(seconds), light);
        },
        1);
}

}  // namespace qv::assets
