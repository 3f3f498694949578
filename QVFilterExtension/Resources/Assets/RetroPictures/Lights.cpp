#include <array>

#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/RetroPictures/RetroPictures.h"

namespace qv::assets {

namespace {

constexpr int kWidth = 960, kHeight = 540;
constexpr float kAspect = float(kWidth) / kHeight;
constexpr Vec3 kEmber{0.90f, 0.11f, 0.03f}, kOrange{1.0f, 0.36f, 0.07f}, kGold{1.0f, 0.70f, 0.28f},
    kCream{1.0f, 0.93f, 0.78f}, kRose{0.86f, 0.14f, 0.30f};

Bitmap lightLine(Vec3 color) {
    constexpr int kLength = 1024, kThickness = 64;
    return buildBitmap(kLength, kThickness, [&](int px, int py) {
        const float along = std::abs(2 * (float(px) + 0.5f) / kLength - 1);
        const float across = std::abs(float(py) + 0.5f - kThickness / 2.0f);
        const float ends = smoothstep(1.0f, 0.90f, along);
        const float core = clamp01(2.9f - across) * ends;
        const float glow = std::exp(-across * across / 70) * 0.55f + std::exp(-across / 9) * 0.25f;
        const float halo = glow * ends * smoothstep(32, 22, across);
        const float alpha = clamp01(core + halo * (1 - core));
        return Rgba{mix(color, Vec3{1, 1, 1}, 0.35f) * core + color * (halo * (1 - core)), alpha};
    });
}

/// Film takes up strong light ever more slowly, and all of its colours drift towards white.
Rgba onFilm(Vec3 light) {
    return {{1 - std::exp(-1.5f * light.x), 1 - std::exp(-1.5f * light.y), 1 - std::exp(-1.5f * light.z)}, 1};
}

}  // namespace

Bitmap redLine() {
    return lightLine({1.0f, 0.10f, 0.07f});
}

Bitmap blueLine() {
    return lightLine({0.16f, 0.46f, 1.0f});
}

Bitmap backLight() {
    return buildBitmap(kWidth, kHeight, [](int px, int py) {
        const float x = (float(px) + 0.5f) / kHeight, y = (float(py) + 0.5f) / kHeight;
        // Three curtains of light behind one another, each bending its own way.
        const float bend = 0.30f * (fractalNoise(0.6f, y * 1.5f, 3, 11) - 0.5f);
        const float second = 0.42f * (fractalNoise(4.6f, y * 1.1f, 3, 13) - 0.5f);
        const float veil = 0.55f + 0.9f * fractalNoise(x * 1.1f, y * 1.5f, 4, 17);
        const float threads = 0.75f + 0.5f * noise(x * 9 + 3 * second, y * 1.2f, 19);
        const float d1 = std::max(x + bend, 0.0f), d2 = std::max(x + second - 0.05f, 0.0f);
        const float along = 0.45f + 0.8f * std::exp(-(y - 0.38f) * (y - 0.38f) / 0.16f);
        Vec3 light = kCream * (1.5f * std::exp(-d1 / 0.06f)) + kGold * (1.0f * std::exp(-d1 / 0.17f)) +
                     kOrange * (0.85f * std::exp(-d2 / 0.34f) * threads) +
                     kEmber * (0.75f * std::exp(-d2 / 0.62f)) +
                     kRose * (0.30f * std::exp(-(d2 - 0.5f) * (d2 - 0.5f) / 0.10f) * veil);
        light *= along * veil * smoothstep(kAspect, kAspect - 0.6f, x);
        return onFilm(light);
    });
}

Bitmap flareLight() {
    struct Band {
        float x, y, slope, width, length, strength;
        Vec3 color;
    };
    constexpr std::array<Band, 6> kBands{{{0.55f, 0.30f, 0.62f, 0.26f, 1.25f, 0.62f, kEmber},
                                          {0.62f, 0.36f, 0.58f, 0.12f, 0.95f, 0.60f, kOrange},
                                          {0.72f, 0.42f, 0.55f, 0.045f, 0.70f, 0.60f, kGold},
                                          {1.20f, 0.62f, 0.66f, 0.20f, 0.80f, 0.34f, kRose},
                                          {1.32f, 0.60f, 0.52f, 0.05f, 0.55f, 0.34f, kGold},
                                          {0.30f, 0.62f, 0.70f, 0.09f, 0.60f, 0.24f, kOrange}}};
    return buildBitmap(kWidth, kHeight, [&](int px, int py) {
        const float x = (float(px) + 0.5f) / kHeight, y = (float(py) + 0.5f) / kHeight;
        Vec3 light;
        std::uint32_t seed = 31;
        for (const Band& band : kBands) {
            seed += 7;
            const float norm = 1 / std::sqrt(1 + band.slope * band.slope);
            const float dx = x - band.x, dy = y - band.y;
            const float along = (dx + band.slope * dy) * norm;
            const float across =
                (dy - band.slope * dx) * norm + 0.09f * (noise(along * 1.3f, 0.5f, seed) - 0.5f);
            const float profile = std::exp(-across * across / (band.width * band.width));
            const float ends = std::exp(-along * along / (band.length * band.length));
            const float threads =
                0.6f + 0.8f * noise(along * 0.8f, across * 7 / std::sqrt(band.width), seed + 1);
            light += band.color * (band.strength * profile * ends * threads);
        }
        const float lamp = std::hypot(x - 0.70f, y - 0.40f);
        light += kCream * (0.9f * std::exp(-lamp / 0.09f)) + kOrange * (0.35f * std::exp(-lamp / 0.30f));
        // Nothing reaches the borders, so that the flare may wander.
        const float bx = 2 * x / kAspect - 1, by = 2 * y - 1;
        return onFilm(light *
                      (smoothstep(1.0f, 0.25f, std::abs(bx)) * smoothstep(1.0f, 0.30f, std::abs(by))));
    });
}

Bitmap printFrame() {
    constexpr int kSide = 600, kPeriod = 200;
    // Waves whose periods divide the part of an edge that repeats.
    const auto deckle = [](float along, std::uint32_t edge) {
        float sum = 0;
        for (int k = 1; k <= 24; ++k) {
            const float phase = 6.2832f * hash01(k, int(edge), 51);
            const float weight = k < 6 ? 0.5f : 1.0f;
            sum += weight / std::sqrt(float(k)) * std::sin(6.2832f * float(k) * along / kPeriod + phase);
        }
        return sum;
    };
    return buildBitmap(kSide, kSide, [&](int px, int py) {
        const float x = float(px) + 0.5f, y = float(py) + 0.5f;
        const std::array<float, 4> depth{x - 0.9f * deckle(y, 0), y - 0.9f * deckle(x, 1),
                                         kSide - x - 0.9f * deckle(y, 2), kSide - y - 0.9f * deckle(x, 3)};
        const float outer = std::min({depth[0], depth[1], depth[2], depth[3]}) - 7;
        // The exposed area has slightly rounded corners.
        const float cx = std::max(std::abs(x - kSide / 2.0f) - (kSide / 2.0f - 42), 0.0f);
        const float cy = std::max(std::abs(y - kSide / 2.0f) - (kSide / 2.0f - 42), 0.0f);
        const float inner = std::hypot(cx, cy) - 9;
        const float paper = clamp01(0.7f * outer + 0.5f), covers = clamp01(0.8f * inner + 0.5f);
        // Paper: fibres, yellowed towards its edge, and a soft shadow where the deckle thins it.
        const float fibre =
            hash01(px % kPeriod, py % kPeriod, 61) + hash01(px % kPeriod / 2, py % kPeriod / 2, 62) - 1;
        const float edge = smoothstep(10, 0, outer);
        Vec3 white = Vec3{0.955f, 0.935f, 0.885f} * (1 + 0.05f * fibre) + Vec3{-0.05f, -0.07f, -0.12f} * edge;
        const Vec3 around{0.075f, 0.066f, 0.058f};
        // The emulsion darkens a hair's breadth inside the paper.
        const float rim = 0.35f * smoothstep(-7, 0, inner) * (1 - covers);
        const float alpha = std::max(covers, rim);
        return Rgba{mix(around, white, paper) * covers + Vec3{0.10f, 0.06f, 0.03f} * (rim * (1 - covers)),
                    alpha};
    });
}

}  // namespace qv::assets
