#include "QVFilterExtension/Resources/Assets/EffectPictures/EffectPictures.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"

namespace qv::assets {

namespace {

constexpr int kSide = 512;
constexpr float kRadius = 0.97f;  // of half the picture
constexpr float kPi = 3.14159265f;

/// Share of light that a film of `thickness` nanometres mirrors at the three wavelengths, where light comes
/// in at `cosine` to the film's normal: two-beam interference with a phase jump of half a wave at the first
/// surface.
Vec3 filmReflection(float thickness, float cosine) {
    constexpr float kIndex = 1.33f;
    const float inside = std::sqrt(1 - (1 - cosine * cosine) / (kIndex * kIndex));
    const auto at = [&](float wavelength) {
        const float wave = std::sin(2 * kPi * kIndex * thickness * inside / wavelength);
        return wave * wave;
    };
    return {at(640), at(540), at(455)};
}

/// A window of four panes as a lens sees it in a ball, turned by `angle`: 0..1. The place is on the ball's
/// disc.
float windowGlow(float x, float y, float centerX, float centerY, float angle, float width, float height,
                 float softness) {
    const float c = std::cos(angle), s = std::sin(angle);
    const float dx = x - centerX, dy = y - centerY;
    // Along the rim the mirrored window bends with the ball.
    const float along = c * dx + s * dy, across = -s * dx + c * dy + 0.42f * along * along;
    const auto side = [&](float at, float half) {
        return smoothstep(half + softness, half - softness, std::abs(at));
    };
    const float bars = smoothstep(0.006f, 0.006f + 0.7f * softness, std::abs(along)) *
                       smoothstep(0.006f, 0.006f + 0.7f * softness, std::abs(across - 0.01f));
    return side(along, width) * side(across, height) * mix(0.35f, 1.0f, bars);
}

Rgba bubbleAt(float x, float y) {
    const float r = std::sqrt(x * x + y * y);
    if (r >= 1) return {};
    const float cosine = std::sqrt(1 - r * r);

    // The film drains downwards and is stirred: bands that flow.
    const float swirlX = fractalNoise(1.4f * x + 3.1f, 1.4f * y + 8.2f, 4, 11) - 0.5f;
    const float swirlY = fractalNoise(1.4f * x + 9.7f, 1.4f * y + 1.3f, 4, 23) - 0.5f;
    const float flow = fractalNoise(1.1f * x + 1.6f * swirlX, 1.9f * y + 1.6f * swirlY, 4, 37) - 0.5f;
    const float thickness = 390 + 170 * y + 420 * flow + 40 * x;
    Vec3 film = filmReflection(thickness, cosine);
    // Both walls of the bubble mirror; the far one is seen through the near one and evens the colours.
    const Vec3 far = filmReflection(470 - 150 * y + 260 * swirlX, cosine);
    film = film * 0.66f + far * 0.34f;
    const float grey = dot(film, {0.3f, 0.5f, 0.2f});
    film = mix(Vec3{grey, grey, grey}, film, 1.4f);
    film = {clamp01(film.x), clamp01(film.y), clamp01(film.z)};

    // Schlick's approximation, for what is mirrored more and more towards the rim.
    const float grazing = std::pow(1 - cosine, 1.9f);
    const float mirrored = 0.13f + 0.95f * grazing;
    // Sky above, ground below, as the ball mirrors them.
    const Vec3 sky = mix(Vec3{1.0f, 0.98f, 0.95f}, Vec3{0.80f, 0.92f, 1.0f}, smoothstep(0.5f, -0.9f, y));
    const float surroundings = mix(0.72f, 1.0f, smoothstep(0.7f, -0.8f, y - 0.25f * x));
    Vec3 color = film * sky * (mirrored * surroundings);

    // The rim itself: a fine bright line, a little off the border.
    const float line = std::exp(-std::pow((r - 0.968f) / 0.02f, 2.0f));
    color += (film * 0.6f + Vec3{0.4f, 0.4f, 0.4f}) * (0.55f * line * surroundings);

    const float key = windowGlow(x, y, -0.44f, -0.50f, -0.72f, 0.20f, 0.115f, 0.035f);
    const float fill = windowGlow(x, y, 0.50f, 0.53f, 2.42f, 0.13f, 0.06f, 0.045f);
    const float glint = std::exp(-((x + 0.62f) * (x + 0.62f) + (y + 0.16f) * (y + 0.16f)) / 0.0011f);
    const float bloom = std::exp(-((x + 0.42f) * (x + 0.42f) + (y + 0.47f) * (y + 0.47f)) / 0.09f);
    color += Vec3{0.97f, 0.985f, 1.0f} * (0.92f * key + 0.45f * glint + 0.16f * bloom) +
             (film * 0.5f + Vec3{0.5f, 0.5f, 0.5f}) * (0.55f * fill);

    // A bubble takes a little light from what is behind it, most at the rim.
    const float light = std::max({color.x, color.y, color.z});
    const float alpha = clamp01(light + 0.03f + 0.16f * grazing);
    const float cover = smoothstep(1.0f, 1.0f - 2.4f / (kRadius * kSide / 2), r);
    return {color * cover, alpha * cover};
}

}  // namespace

Bitmap soapBubble() {
    return buildBitmap(kSide, kSide, [](int px, int py) {
        const float x = (float(px) + 0.5f) / (kSide / 2) - 1, y = (float(py) + 0.5f) / (kSide / 2) - 1;
        return bubbleAt(x / kRadius, y / kRadius);
    });
}

}  // namespace qv::assets
