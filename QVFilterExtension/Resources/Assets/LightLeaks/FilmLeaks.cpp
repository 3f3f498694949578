#include "QVFilterExtension/Resources/Assets/LightLeaks/FilmLeaks.h"

#include <cmath>
#include <vector>

#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

namespace {

constexpr int kWidth = 960, kHeight = 540;
constexpr float kPi = 3.14159265f;

/// What one exposure leaves in the layers for red, green and blue. Light that comes through the back of the
/// film meets the red layer first: a little light is red, more is orange, then yellow, and only the strongest
/// is white. Through the front it is the other way round.
constexpr Vec3 kBack{2.6f, 0.62f, 0.11f}, kWarm{2.2f, 1.0f, 0.30f}, kRose{2.0f, 0.30f, 0.62f},
    kFront{0.30f, 0.85f, 2.5f}, kViolet{0.95f, 0.25f, 2.1f}, kCyan{0.12f, 1.25f, 1.7f};

enum class Shape {
    glow,     ///< an oval, soft all over
    edge,     ///< from a line inwards: full behind it, falling by e over `width` before it, faded along it
    curtain,  ///< a band torn into threads along its way
    fan,      ///< rays from a point, strongest along `angle`
    holes,    ///< the light through a row of perforations, out of focus
    arc,      ///< a part of a ring of radius `length`
    veil,     ///< all over, uneven
};

/// Places and lengths are heights of the frame, which is 16/9 wide; angles degrees, clockwise as seen.
struct Light {
    Shape shape;
    float x, y, angle, length, width, strength;
    Vec3 layers;
};

using Leak = std::vector<Light>;

/// Light behind the moments: a first sweep from right to left (0 to 5), a flash (6, 7), curtains (8 to 14,
/// from either side into 11 and 12), perforations (15 to 17), a lens (18 to 22), and blue light from the
/// front.
const Leak& leakOf(int index) {
    using enum Shape;
    static const std::vector<Leak> leaks{
        // 0: a first red breath on the right border.
        {{edge, 1.80f, 0.42f, 184, 0.55f, 0.075f, 0.62f, kBack},
         {glow, 1.70f, 0.30f, 80, 0.34f, 0.20f, 0.22f, kRose}},
        // 1: orange, through a gap at the lower right.
        {{edge, 1.84f, 0.78f, 205, 0.72f, 0.15f, 0.80f, kBack},
         {glow, 1.62f, 0.88f, 24, 0.42f, 0.15f, 0.85f, kWarm},
         {veil, 0, 0, 0, 0, 0, 0.035f, kBack}},
        // 2: a broad slanted band at two thirds.
        {{curtain, 1.32f, 0.46f, 104, 0.86f, 0.15f, 1.05f, kBack},
         {curtain, 1.40f, 0.34f, 102, 0.52f, 0.055f, 0.95f, kWarm},
         {edge, 1.88f, 0.50f, 180, 0.9f, 0.18f, 0.40f, kBack},
         {veil, 0, 0, 0, 0, 0, 0.05f, kRose}},
        // 3: the middle, wide and pale, with one clear line.
        {{glow, 0.82f, 0.30f, 112, 0.74f, 0.28f, 1.10f, kBack},
         {glow, 0.88f, 0.12f, 110, 0.46f, 0.13f, 1.15f, kWarm},
         {curtain, 1.14f, 0.56f, 109, 0.60f, 0.034f, 0.42f, kWarm},
         {veil, 0, 0, 0, 0, 0, 0.09f, kBack}},
        // 4: what is left at the upper left.
        {{glow, 0.18f, 0.12f, 140, 0.62f, 0.30f, 0.75f, kBack},
         {glow, 0.02f, 0.02f, 140, 0.30f, 0.16f, 0.85f, kWarm},
         {veil, 0, 0, 0, 0, 0, 0.04f, kRose}},
        // 5: a last ember on the left.
        {{edge, -0.05f, 0.62f, -4, 0.42f, 0.085f, 0.55f, kBack},
         {glow, 0.10f, 0.84f, 60, 0.26f, 0.12f, 0.20f, kRose}},
        // 6: the flash of an opened camera, from the upper right.
        {{glow, 1.60f, 0.10f, 150, 1.00f, 0.52f, 1.55f, kBack},
         {glow, 1.72f, 0.02f, 150, 0.62f, 0.30f, 2.3f, kWarm},
         {fan, 1.86f, -0.10f, 152, 1.30f, 0.30f, 0.50f, kWarm},
         {veil, 0, 0, 0, 0, 0, 0.12f, kBack}},
        // 7: its afterglow, with the ring of the take-up.
        {{arc, 1.10f, 0.62f, 200, 0.62f, 0.16f, 0.62f, kBack},
         {glow, 1.20f, 0.60f, 0, 0.36f, 0.30f, 0.32f, kRose},
         {edge, 0.9f, 1.04f, -90, 0.9f, 0.09f, 0.40f, kBack}},
        // 8: magenta from the lower left corner.
        {{glow, 0.02f, 1.02f, -30, 0.66f, 0.34f, 0.95f, kRose},
         {glow, -0.04f, 1.04f, -24, 0.34f, 0.16f, 0.95f, kWarm}},
        // 9: curtains over the left third.
        {{curtain, 0.36f, 0.52f, 88, 0.95f, 0.17f, 0.85f, kBack},
         {curtain, 0.22f, 0.60f, 91, 0.80f, 0.060f, 0.95f, kWarm},
         {curtain, 0.62f, 0.40f, 86, 0.60f, 0.030f, 0.36f, kRose}},
        // 10: the brightest curtain, in the middle.
        {{curtain, 0.90f, 0.50f, 90, 1.10f, 0.24f, 0.95f, kBack},
         {curtain, 0.94f, 0.48f, 91, 1.00f, 0.075f, 1.55f, kWarm},
         {curtain, 0.55f, 0.55f, 89, 0.70f, 0.050f, 0.42f, kRose},
         {veil, 0, 0, 0, 0, 0, 0.07f, kBack}},
        // 11: orange fog over all, thinnest in the middle.
        {{veil, 0, 0, 0, 0, 0, 0.26f, kBack},
         {edge, 0.89f, -0.08f, 90, 1.2f, 0.20f, 0.62f, kWarm},
         {edge, 0.89f, 1.08f, -90, 1.2f, 0.16f, 0.70f, kBack}},
        // 12: the fog sinks, two dim borders.
        {{veil, 0, 0, 0, 0, 0, 0.06f, kRose},
         {edge, -0.04f, 0.5f, 0, 0.8f, 0.065f, 0.42f, kBack},
         {edge, 1.82f, 0.5f, 180, 0.8f, 0.065f, 0.42f, kBack}},
        // 13: rays from the lower right.
        {{fan, 1.92f, 1.14f, 214, 1.40f, 0.42f, 1.00f, kBack},
         {glow, 1.76f, 1.02f, 30, 0.40f, 0.24f, 1.10f, kWarm}},
        // 14: rays from above, across the middle.
        {{fan, 1.05f, -0.30f, 100, 1.50f, 0.50f, 0.95f, kBack},
         {glow, 1.02f, -0.04f, 0, 0.42f, 0.16f, 1.15f, kWarm},
         {veil, 0, 0, 0, 0, 0, 0.06f, kRose}},
        // 15: perforations along the bottom.
        {{holes, 0.30f, 0.985f, 0, 0.262f, 0.060f, 0.85f, kWarm},
         {edge, 0.89f, 1.05f, -90, 1.1f, 0.065f, 0.52f, kBack}},
        // 16: they flare upwards.
        {{holes, 0.18f, 0.945f, 0, 0.262f, 0.085f, 1.20f, kWarm},
         {edge, 0.89f, 1.06f, -90, 1.2f, 0.22f, 0.85f, kBack},
         {glow, 0.66f, 0.88f, 90, 0.42f, 0.24f, 0.55f, kBack},
         {glow, 1.30f, 0.94f, 80, 0.36f, 0.30f, 0.45f, kBack}},
        // 17: a rose dusk from above.
        {{edge, 0.89f, -0.10f, 90, 1.3f, 0.34f, 0.85f, kRose},
         {glow, 0.60f, -0.02f, 4, 0.60f, 0.12f, 0.60f, kWarm},
         {veil, 0, 0, 0, 0, 0, 0.06f, kRose}},
        // 18: a thin level streak.
        {{curtain, 0.44f, 0.36f, 4, 0.56f, 0.040f, 0.80f, kWarm},
         {glow, 0.30f, 0.37f, 5, 0.62f, 0.105f, 0.60f, kBack},
         {glow, 0.16f, 0.40f, 0, 0.30f, 0.24f, 0.25f, kRose}},
        // 19: two of them, with a lamp behind.
        {{curtain, 0.90f, 0.40f, 5, 0.80f, 0.085f, 0.75f, kWarm},
         {curtain, 1.20f, 0.56f, 3, 0.50f, 0.050f, 0.45f, kBack},
         {glow, 0.74f, 0.42f, 2, 0.44f, 0.22f, 0.62f, kBack},
         {glow, 0.74f, 0.41f, 30, 0.17f, 0.12f, 0.95f, kWarm}},
        // 20: a golden bloom.
        {{glow, 1.14f, 0.56f, 160, 0.56f, 0.40f, 0.70f, kWarm},
         {glow, 1.10f, 0.56f, 160, 0.24f, 0.18f, 0.95f, kWarm},
         {arc, 1.10f, 0.56f, 20, 0.46f, 0.080f, 0.34f, kRose}},
        // 21: rings of a lens, in order of their colours.
        {{arc, 1.96f, 0.94f, 208, 1.00f, 0.070f, 0.75f, kBack},
         {arc, 1.96f, 0.94f, 206, 0.84f, 0.055f, 0.62f, kWarm},
         {arc, 1.96f, 0.94f, 204, 0.70f, 0.050f, 0.42f, kCyan},
         {glow, 1.72f, 0.96f, 30, 0.34f, 0.20f, 0.55f, kBack}},
        // 22: dull embers from above.
        {{edge, 1.20f, -0.06f, 82, 0.8f, 0.11f, 0.60f, kBack},
         {glow, 1.52f, 0.06f, 10, 0.40f, 0.10f, 0.32f, kRose}},
        // 23: blue on the left border.
        {{edge, -0.05f, 0.44f, 3, 0.62f, 0.085f, 0.62f, kFront},
         {glow, 0.08f, 0.20f, 70, 0.40f, 0.14f, 0.30f, kViolet}},
        // 24: a slanted band, cyan in violet.
        {{curtain, 0.56f, 0.52f, 70, 0.92f, 0.17f, 0.75f, kViolet},
         {curtain, 0.62f, 0.46f, 72, 0.66f, 0.055f, 0.85f, kCyan},
         {veil, 0, 0, 0, 0, 0, 0.05f, kFront}},
        // 25: a cold flare with a rose rim.
        {{glow, 1.20f, 0.34f, 20, 0.52f, 0.34f, 0.85f, kFront},
         {glow, 1.24f, 0.30f, 20, 0.22f, 0.14f, 1.35f, kCyan},
         {arc, 1.22f, 0.32f, 96, 0.50f, 0.110f, 0.40f, kRose},
         {curtain, 1.00f, 0.36f, 3, 0.72f, 0.040f, 0.42f, kFront}},
        // 26: a violet dusk.
        {{edge, 0.89f, 1.10f, -90, 1.2f, 0.26f, 0.62f, kViolet},
         {glow, 1.62f, 0.90f, 10, 0.52f, 0.22f, 0.48f, kFront},
         {veil, 0, 0, 0, 0, 0, 0.05f, kViolet}},
    };
    return leaks[std::size_t(index)];
}

float bell(float v) {
    return std::exp(-v * v);
}

float perforations(float along, float across, const Light& light) {
    const float cell = along - light.length * std::round(along / light.length);
    const float dx = std::max(std::abs(cell) - 0.20f * light.length, 0.0f) / (0.60f * light.width);
    const float dy = std::max(std::abs(across) - 0.25f * light.width, 0.0f) / (0.85f * light.width);
    return std::exp(-(dx * dx + dy * dy)) + 0.25f * bell(across / (3 * light.width));
}

/// Exposure that a light leaves at a place.
float exposureAt(const Light& light, float x, float y, std::uint32_t seed) {
    const float turn = light.angle * kPi / 180, dx = x - light.x, dy = y - light.y;
    const float c = std::cos(turn), s = std::sin(turn);
    const float wander = fractalNoise(0.9f * x + 3, 0.9f * y, 3, seed) - 0.5f;
    const float along = dx * c + dy * s, across = dy * c - dx * s + 0.5f * light.width * wander;
    switch (light.shape) {
        case Shape::glow:
            return bell(along / light.length) * bell(across / light.width);
        case Shape::edge: {
            // `along` leads away from the line.
            const float depth = along + 0.9f * light.width * wander;
            return (depth < 0 ? 1 : std::exp(-depth / light.width)) * bell(across / light.length);
        }
        case Shape::curtain: {
            const float threads = noise(along * 1.1f + 9, 2.6f * across / light.width, seed + 7);
            const float fine = noise(along * 0.7f, 7.5f * across / light.width, seed + 8);
            return bell(along / light.length) * bell(across / light.width) *
                   (0.45f + 0.75f * threads + 0.35f * fine);
        }
        case Shape::fan: {
            const float r = std::hypot(dx, dy), off = std::remainder(std::atan2(dy, dx) - turn, 2 * kPi);
            const float rays = noise(off * 14 + 20, 0.8f * r, seed + 3),
                        fine = noise(off * 41 + 60, r, seed + 4);
            return bell(off / light.width) * bell(r / light.length) * (0.35f + 0.8f * rays + 0.35f * fine);
        }
        case Shape::holes:
            return perforations(along, across, light);
        case Shape::arc: {
            const float r = std::hypot(dx, dy), off = std::remainder(std::atan2(dy, dx) - turn, 2 * kPi);
            const float ring = (r - light.length + 0.3f * light.width * wander) / light.width;
            // Sharp outside, trailing inwards.
            return bell(off / 0.9f) * (ring > 0 ? bell(1.8f * ring) : std::exp(ring * 1.3f));
        }
        case Shape::veil:
            return 0.35f + 1.3f * fractalNoise(1.4f * x, 1.4f * y, 3, seed + 5);
    }
    return 0;
}

}  // namespace

Bitmap filmLeak(int index) {
    const Leak& leak = leakOf(index);
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(kWidth) * kHeight * 4);
    parallelFor(kHeight, [&](int py) {
        std::uint8_t* out = pixels->data() + std::size_t(py) * kWidth * 4;
        for (int px = 0; px < kWidth; ++px, out += 4) {
            const float x = (float(px) + 0.5f) / kHeight, y = (float(py) + 0.5f) / kHeight;
            Vec3 exposure{};
            std::uint32_t seed = 1000u * std::uint32_t(index + 1);
            // Nothing that the light came through was straight.
            const float warpX = x + 0.12f * (noise(0.9f * x, 0.9f * y, seed + 1) - 0.5f);
            const float warpY = y + 0.12f * (noise(0.9f * x + 5, 0.9f * y, seed + 2) - 0.5f);
            for (const Light& light : leak) {
                const bool isStraight = light.shape == Shape::holes;
                exposure += light.layers * (light.strength * exposureAt(light, isStraight ? x : warpX,
                                                                        isStraight ? y : warpY, seed += 20));
            }
            // Smoke in the camera, and grain that hides the steps of faint light.
            exposure *= 0.82f + 0.36f * fractalNoise(2.3f * x, 2.3f * y, 3, seed + 11);
            const float grain = 2.2f * (hash01(px, py, seed) + hash01(px, py, seed + 1) - 1);
            const float exposures[3] = {exposure.x, exposure.y, exposure.z};
            for (int c = 0; c < 3; ++c) {
                const float code = 255 * (1 - std::exp(-exposures[c]));
                out[c] =
                    std::uint8_t(std::clamp(code + grain * std::min(1.0f, code / 8) + 0.5f, 0.0f, 255.0f));
            }
            out[3] = 255;
        }
    });
    return {kWidth, kHeight, std::move(pixels)};
}

}  // namespace qv::assets
