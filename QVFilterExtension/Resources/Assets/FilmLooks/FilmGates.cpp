#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/FilmLooks/FilmLooks.h"

namespace qv::assets {

namespace {

constexpr int kSide = 1080;
constexpr float kMiddle = kSide / 2;

/// A place on the border, as one of its four corners mirrored onto each other sees it.
struct Place {
    float distance;  ///< pixels into the metal, negative in the opening
    float corner;    ///< 0 between the corners, 1 well within one: where edges may be uneven
    float x, y;      ///< pixels of the picture
    float dx, dy;    ///< from the nearest sides

    /// The metal's shadow: 1 on the sides' edges, falling by e over `reach` pixels, without a crease between
    /// two sides. From `end` pixels on there is none.
    float shade(float inset, float reach, float end = kSide) const {
        const float whole = 1 - std::exp(-end / reach);
        const auto side = [&](float d) {
            return std::min((1 - std::exp(-std::max(d - inset, 0.0f) / reach)) / whole, 1.0f);
        };
        return 1 - side(dx) * side(dy);
    }
};

/// The opening is `inset` pixels from each side and has rounded corners.
Place placeAt(int px, int py, float inset, float radius) {
    const float x = float(px) + 0.5f, y = float(py) + 0.5f;
    const float dx = kMiddle - std::abs(x - kMiddle), dy = kMiddle - std::abs(y - kMiddle);
    const float cx = inset + radius - dx, cy = inset + radius - dy;
    const float outside = std::hypot(std::max(cx, 0.0f), std::max(cy, 0.0f));
    const float distance = outside + std::min(std::max(cx, cy), 0.0f) - radius;
    // The middle third of every side is repeated.
    const float along = std::max(dx, dy);
    return {distance, smoothstep(350, 230, along), x, y, dx, dy};
}

/// Unevenness of an edge: crumbs everywhere, and where corners are also waves.
float ragged(const Place& place, float waves, float crumbs, std::uint32_t seed) {
    const float wave = fractalNoise(place.x * 0.011f, place.y * 0.011f, 4, seed) - 0.5f;
    const float crumb = noise(place.x * 0.42f, place.y * 0.42f, seed + 5) - 0.5f;
    return waves * place.corner * wave + crumbs * crumb;
}

/// Lint that hangs into the opening from the corners.
float lint(const Place& place, std::uint32_t seed) {
    const float warpX = place.x + 26 * (fractalNoise(place.x * 0.012f, place.y * 0.012f, 3, seed) - 0.5f);
    const float warpY = place.y + 26 * (fractalNoise(place.x * 0.012f, place.y * 0.012f, 3, seed + 9) - 0.5f);
    const float thread = std::abs(noise(warpX * 0.021f, warpY * 0.021f, seed + 3) - 0.5f);
    const float reach = smoothstep(-34, -2, place.distance) * place.corner;
    return smoothstep(0.016f, 0.004f, thread) * reach *
           smoothstep(0.52f, 0.62f, noise(place.x * 0.008f, place.y * 0.008f, seed + 4));
}

}  // namespace

Bitmap blackFilmGate() {
    return buildBitmap(kSide, kSide, [](int px, int py) {
        const Place place = placeAt(px, py, 30, 58);
        const float edge = place.distance + ragged(place, 13, 2.2f, 61);
        const float metal = smoothstep(-3.4f, 3.0f, edge);
        // The middle is clear, so that this layer costs nothing there.
        const float shade = 0.45f * place.shade(30, 15, 150) + 0.30f * place.shade(30, 60, 150);
        const float alpha = std::max({metal, shade, 0.85f * lint(place, 71)});
        return Rgba{Vec3{0.022f, 0.022f, 0.024f} * alpha, alpha};
    });
}

Bitmap lightFilmGate() {
    return buildBitmap(kSide, kSide, [](int px, int py) {
        const Place place = placeAt(px, py, 20, 74);
        const float edge = place.distance + ragged(place, 7, 1.2f, 161);
        const float metal = smoothstep(-3.8f, 2.8f, edge);
        const float shade = 0.28f * place.shade(20, 22) + 0.22f * place.shade(20, 90);
        // The picture's light creeps under the metal and fogs the film's rim.
        const float crept = std::exp(-std::max(edge, 0.0f) / 9) * (0.8f + 0.4f * place.corner);
        const float alpha = std::max({metal, shade, 0.5f * lint(place, 171)});
        const Vec3 color = mix(Vec3{0.09f, 0.035f, 0.02f},
                               Vec3{0.035f, 0.022f, 0.018f} + Vec3{0.42f, 0.15f, 0.045f} * crept, metal);
        return Rgba{color * alpha, alpha};
    });
}

Bitmap damagedFilmGate() {
    return buildBitmap(kSide, kSide, [](int px, int py) {
        const Place place = placeAt(px, py, 36, 44);
        const float edge = place.distance + ragged(place, 44, 4.5f, 261);
        const float metal = smoothstep(-2.6f, 2.4f, edge);
        const float shade = 0.40f * place.shade(36, 20) + 0.22f * place.shade(36, 70);
        // Perforations peep in beside the corners of the left and right sides.
        const float hx = place.dx + 16, hy = place.dy - 205;
        const float hole = std::hypot(std::max(std::abs(hx) - 20, 0.0f), std::max(std::abs(hy) - 34, 0.0f)) -
                           14 + ragged(place, 14, 3, 281);
        const float lamp = smoothstep(1.8f, -1.8f, hole), glow = std::exp(-std::max(hole, 0.0f) / 10);
        const float alpha = std::max({metal, shade, 0.9f * lint(place, 271), lamp});
        const Vec3 base = Vec3{0.045f, 0.030f, 0.022f} + Vec3{0.60f, 0.22f, 0.05f} * (0.6f * glow * metal);
        return Rgba{mix(base, Vec3{1.0f, 0.95f, 0.82f}, lamp) * alpha, alpha};
    });
}

}  // namespace qv::assets
