#include <numbers>

#include "QVFilterExtension/Resources/Assets/EffectPictures/EffectPictures.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"

namespace qv::assets {

namespace {

constexpr int kSide = 768;

/// A crumpled sheet at a place, 0..1 across and down: creases where ridges of noise meet.
struct Sheet {
    float height;  ///< 0..1
    float dx, dy;  ///< slope
};

float sheetHeight(float u, float v, float cells, std::uint32_t seed) {
    const float bent = u * cells + 1.3f * fractalNoise(u * cells * 0.6f, v * cells * 0.6f, 3, seed + 20);
    const float slid = v * cells + 1.3f * fractalNoise(v * cells * 0.6f, u * cells * 0.6f, 3, seed + 30);
    float sum = 0, weight = 0.5f, x = bent, y = slid;
    for (int i = 0; i < 4; ++i) {
        sum += weight * std::abs(2 * noise(x, y, seed + std::uint32_t(i)) - 1);
        weight *= 0.5f;
        const float turned = 1.5f * x - 1.1f * y;
        y = 1.1f * x + 1.5f * y;
        x = turned;
    }
    return sum;
}

Sheet sheetAt(float u, float v, float cells, std::uint32_t seed) {
    constexpr float kStep = 1.0f / kSide;
    const float here = sheetHeight(u, v, cells, seed);
    return {here, (sheetHeight(u + kStep, v, cells, seed) - here) * kSide / cells,
            (sheetHeight(u, v + kStep, cells, seed) - here) * kSide / cells};
}

template <class Shade>
Bitmap material(Shade&& shade) {
    return buildBitmap(kSide, kSide, [&](int x, int y) {
        return Rgba{shade((float(x) + 0.5f) / kSide, (float(y) + 0.5f) / kSide), 1};
    });
}

}  // namespace

Bitmap foilMaterial() {
    return material([](float u, float v) {
        const Sheet sheet = sheetAt(u, v, 5, 700);
        const float facing = 1 / std::sqrt(1 + 0.5f * (sheet.dx * sheet.dx + sheet.dy * sheet.dy));
        const float hue = 0.9f * sheet.height + 0.16f * sheet.dx + 0.5f * u + 0.25f * v;
        const auto wave = [&](float shift) {
            return std::cos(2 * std::numbers::pi_v<float> * (hue + shift));
        };
        const Vec3 rainbow{0.68f + 0.32f * wave(0.0f), 0.66f + 0.3f * wave(0.36f),
                           0.76f + 0.24f * wave(0.68f)};
        const float lamp = clamp01(0.5f - 0.3f * sheet.dx - 0.36f * sheet.dy);
        const float glint = std::pow(lamp, 6.0f);
        return rainbow * (0.38f + 0.62f * facing * (0.45f + 0.75f * lamp)) + Vec3{0.4f, 0.4f, 0.4f} * glint;
    });
}

Bitmap goldMaterial() {
    return material([](float u, float v) {
        const Sheet sheet = sheetAt(u, v, 7, 740);
        const float lamp = clamp01(0.52f - 0.26f * sheet.dx - 0.34f * sheet.dy);
        const float age = fractalNoise(u * 6, v * 6, 4, 750);
        const Vec3 deep{0.40f, 0.22f, 0.06f}, metal{0.86f, 0.62f, 0.22f}, bright{1.0f, 0.93f, 0.66f};
        const Vec3 leaf = lamp < 0.5f ? mix(deep, metal, 2 * lamp) : mix(metal, bright, 2 * lamp - 1);
        // The seams of the leaves, and where the leaf has worn off.
        const float crease = smoothstep(0.16f, 0.04f, sheet.height);
        const float worn = smoothstep(0.62f, 0.72f, age) * 0.5f;
        return mix(leaf, Vec3{0.30f, 0.14f, 0.07f}, clamp01(0.55f * crease + worn));
    });
}

Bitmap marbleMaterial() {
    return material([](float u, float v) {
        const float bendX = fractalNoise(u * 3, v * 3, 5, 780),
                    bendY = fractalNoise(u * 3 + 9, v * 3, 5, 790);
        const float x = u * 2.2f + 1.5f * bendX, y = v * 2.2f + 1.5f * bendY;
        const float cloud = fractalNoise(x * 1.5f, y * 1.5f, 5, 800);
        const float vein = std::abs(2 * fractalNoise(x + y * 0.4f, y, 4, 810) - 1);
        const float fine = std::abs(2 * fractalNoise(x * 2.3f, y * 2.3f + 4, 4, 820) - 1);
        Vec3 stone = mix(Vec3{0.97f, 0.96f, 0.95f}, Vec3{0.66f, 0.69f, 0.75f}, smoothstep(0.4f, 0.8f, cloud));
        stone = mix(stone, Vec3{0.22f, 0.25f, 0.32f}, 0.85f * std::exp(-vein * 26));
        return mix(stone, Vec3{0.80f, 0.60f, 0.28f}, 0.8f * std::exp(-fine * 60));
    });
}

}  // namespace qv::assets
