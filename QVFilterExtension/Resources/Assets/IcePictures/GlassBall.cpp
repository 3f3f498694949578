#include <cmath>

#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/IcePictures/IcePictures.h"

namespace qv::assets {

namespace {

constexpr int kSide = 1024;
constexpr float kMiddleX = 0.5f, kMiddleY = 0.45f, kRadius = 0.42f;
constexpr float kPixel = 1.0f / kSide;

Rgba over(const Rgba& top, const Rgba& below) {
    return {top.color + below.color * (1 - top.alpha), top.alpha + below.alpha * (1 - top.alpha)};
}

Rgba light(Vec3 color, float strength) {
    const float alpha = clamp01(strength);
    return {color * alpha, alpha};
}

float inside(float distance) {
    return clamp01(0.5f - distance / kPixel);
}

/// The drift in the ball: mounds, sunlit from the left, that the glass cuts off.
Rgba drift(float x, float y, float r) {
    const float crest = 0.56f + 0.16f * x * x - 0.10f * std::sin(2.4f * x + 0.6f) +
                        0.03f * (fractalNoise(3 * x + 5, 2.5f, 4, 17) - 0.5f);
    const float below = y - crest;
    const float cover = clamp01(0.5f + below * kRadius / (2.5f * kPixel)) * inside((r - 0.985f) * kRadius);
    const float grain = fractalNoise(60 * x, 60 * y, 2, 21) - 0.5f;
    const float mound = fractalNoise(2.6f * x + 1, 5 * y, 4, 5);
    const float lit = clamp01(0.80f + 0.35f * (mound - 0.5f) - 0.42f * below - 0.16f * x + 0.05f * grain);
    const Vec3 color = mix(Vec3{0.55f, 0.66f, 0.84f}, Vec3{0.99f, 0.995f, 1.0f}, lit);
    return {color * cover, cover};
}

/// What the glass adds: a dark rim, mirrored light, a bright line at its border. (x, y) on its disc.
Rgba glass(float x, float y) {
    const float r = std::hypot(x, y);
    if (r >= 1 + 4 * kPixel) return {};
    const float edge = inside((r - 1) * kRadius);
    Rgba result = drift(x, y, r);
    const float rim = smoothstep(0.80f, 1.0f, r);
    result = over({Vec3{0.05f, 0.08f, 0.14f} * (0.62f * rim * rim), 0.62f * rim * rim}, result);

    const Vec3 day{0.95f, 0.98f, 1.0f};
    // A window to the upper left that bends with the ball, its panes parted by a cross.
    const float angle = std::atan2(y, x) + 2.35f, turn = angle / 0.42f;
    const float along = (r - 0.78f) / 0.095f;
    const float pane = smoothstep(1.0f, 0.86f, std::abs(turn)) * smoothstep(1.0f, 0.8f, std::abs(along)) *
                       smoothstep(0.03f, 0.07f, std::abs(turn)) * smoothstep(0.05f, 0.13f, std::abs(along));
    result = over(light(day, 0.72f * pane * (0.75f + 0.25f * along)), result);
    const float bloom = std::exp(-(std::pow(x + 0.55f, 2.0f) + std::pow(y + 0.55f, 2.0f)) / 0.10f);
    result = over(light(day, 0.20f * bloom), result);
    // Its way through the glass ends as a crescent at the lower right.
    const float crescent = std::exp(-std::pow((r - 0.90f) / 0.035f, 2.0f)) *
                           smoothstep(0.85f, 0.25f, std::abs(std::atan2(y, x) - 0.75f));
    result = over(light({1.0f, 0.97f, 0.92f}, 0.55f * crescent), result);
    const float line = std::exp(-std::pow((r - 0.985f) / 0.009f, 2.0f)) * (0.45f - 0.35f * y);
    result = over(light(day, line), result);
    return {result.color * edge, result.alpha * edge};
}

/// Half the foot's width at a height, of the picture; 0 above and below it.
float footWidth(float y) {
    if (y < 0.835f || y > 0.985f) return 0;
    if (y < 0.862f) return 0.235f + 0.02f * std::sin((y - 0.835f) / 0.027f * 3.1416f);  // the ring
    if (y < 0.945f) return 0.232f + 0.055f * smoothstep(0.862f, 0.945f, y);
    return 0.302f - 0.008f * std::abs(y - 0.965f) / 0.02f;
}

Rgba foot(float x, float y) {
    // Seen from a little above: the front of a round body bulges downwards.
    const float bulge = 0.018f * std::sqrt(std::max(0.0f, 1 - std::pow((x - kMiddleX) / 0.31f, 2.0f)));
    const float at = y - bulge + 0.012f, half = footWidth(at);
    if (half <= 0) return {};
    const float across = (x - kMiddleX) / half, cover = inside(std::abs(x - kMiddleX) - half) *
                                                        clamp01((at - 0.835f) / (2 * kPixel)) *
                                                        clamp01((0.985f - at) / (2 * kPixel));
    if (cover <= 0) return {};
    const float bow = std::sqrt(std::max(0.0f, 1 - across * across));
    const float shade = 0.25f + 0.75f * std::pow(clamp01(bow * 0.85f - 0.35f * across), 0.9f);
    Vec3 color;
    if (at < 0.862f) {
        const float gleam = std::exp(-std::pow((across + 0.42f) / 0.12f, 2.0f)) +
                            0.5f * std::exp(-std::pow((across - 0.55f) / 0.07f, 2.0f));
        const float ridge = 0.7f + 0.3f * std::sin((at - 0.835f) / 0.027f * 3.1416f);
        color =
            Vec3{0.83f, 0.62f, 0.30f} * (shade * ridge) + Vec3{1.0f, 0.9f, 0.66f} * (0.75f * gleam * ridge);
    } else {
        const float wood = fractalNoise(9 * x + 3 * fractalNoise(2 * x, 30 * y, 3, 8), 90 * y, 4, 41);
        color = mix(Vec3{0.16f, 0.075f, 0.04f}, Vec3{0.40f, 0.215f, 0.115f}, wood) * (0.35f + 0.9f * shade);
        const float varnish = std::exp(-std::pow((across + 0.45f) / 0.10f, 2.0f));
        color += Vec3{0.85f, 0.80f, 0.75f} * (0.17f * varnish);
        if (at > 0.945f) color = color * 1.18f;
    }
    color = {clamp01(color.x), clamp01(color.y), clamp01(color.z)};
    return {color * cover, cover};
}

}  // namespace

Bitmap glassBall() {
    return buildBitmap(kSide, kSide, [](int px, int py) {
        const float x = (float(px) + 0.5f) * kPixel, y = (float(py) + 0.5f) * kPixel;
        const Rgba ball = glass((x - kMiddleX) / kRadius, (y - kMiddleY) / kRadius);
        // The foot throws a soft shadow below itself.
        const float shadow = 0.55f * std::exp(-std::pow((x - kMiddleX) / 0.24f, 4.0f)) *
                             smoothstep(0.035f, 0.0f, std::abs(y - 0.975f));
        return over(foot(x, y), over(ball, {{}, shadow}));
    });
}

}  // namespace qv::assets
