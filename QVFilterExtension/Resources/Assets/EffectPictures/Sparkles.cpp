#include "QVFilterExtension/Resources/Assets/EffectPictures/EffectPictures.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"

namespace qv::assets {

namespace {

/// The place of a pixel in a square picture: -1..1, y down.
template <class Shade>
Bitmap centered(int side, Shade&& shade) {
    return buildBitmap(side, side, [&](int px, int py) {
        const float half = float(side) / 2;
        return shade((float(px) + 0.5f) / half - 1, (float(py) + 0.5f) / half - 1);
    });
}

Rgba lightOf(Vec3 color) {
    const Vec3 shown{1 - std::exp(-1.7f * color.x), 1 - std::exp(-1.7f * color.y),
                     1 - std::exp(-1.7f * color.z)};
    return {shown, std::max({shown.x, shown.y, shown.z})};
}

/// Four points with hollow sides, the upright pair longer, in a faint glow.
Rgba sparkleAt(float x, float y) {
    const float r = std::sqrt(x * x + y * y), fade = smoothstep(0.98f, 0.5f, r);
    const auto hollow = [](float across, float along) {
        const float sum = std::pow(std::abs(across), 0.5f) + std::pow(std::abs(along), 0.5f);
        return smoothstep(1.02f, 0.86f, sum);
    };
    const float body = hollow(x / 0.78f, y / 0.97f);
    const float turnedX = 0.70710678f * (x + y), turnedY = 0.70710678f * (y - x);
    const float small = hollow(turnedX / 0.30f, turnedY / 0.30f);
    const float core = std::exp(-r * r / 0.012f),
                glow = (0.75f * std::exp(-r / 0.11f) + 0.22f * std::exp(-r / 0.30f)) * fade;
    return lightOf(Vec3{1, 1, 1} * (2.2f * body + 0.8f * small + 1.5f * core) +
                   Vec3{0.85f, 0.92f, 1.0f} * glow);
}

/// A disc as an open lens shows a point of light: even, with a brighter rim, and a soft bloom around it.
Rgba discAt(float x, float y) {
    const float r = std::sqrt(x * x + y * y);
    const float disc = smoothstep(0.66f, 0.60f, r);
    const float rim = std::exp(-(r - 0.585f) * (r - 0.585f) / 0.0028f);
    const float bloom = 0.16f * smoothstep(1.0f, 0.55f, r);
    return lightOf(Vec3{1, 1, 1} * (disc * (0.85f + 0.25f * r) + 0.80f * rim * disc + bloom * (1 - disc)));
}

}  // namespace

Bitmap sparkle() {
    return centered(256, sparkleAt);
}

Bitmap lightDisc() {
    return centered(128, discAt);
}

}  // namespace qv::assets
