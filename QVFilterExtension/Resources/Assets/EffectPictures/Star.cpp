#include "QVFilterExtension/Resources/Assets/EffectPictures/EffectPictures.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"

namespace qv::assets {

namespace {

constexpr int kSide = 256;

/// Light of a spike along the x axis, thinner and fainter outwards.
float spike(float x, float y, float reach) {
    const float along = std::abs(x) / reach;
    if (along >= 1) return 0;
    const float width = mix(0.030f, 0.007f, along);
    return (1 - along) * (1 - along) * std::exp(-y * y / (width * width));
}

Rgba starAt(float x, float y) {
    const float r = std::sqrt(x * x + y * y);
    const float fade = smoothstep(0.98f, 0.35f, r);
    const float core = std::exp(-r * r / 0.0075f);
    // Seen through air: steep at first, wide after.
    const float halo = 0.70f * std::exp(-r / 0.12f) + 0.30f * std::exp(-r / 0.28f);
    const float diagonalX = 0.70710678f * (x + y), diagonalY = 0.70710678f * (y - x);
    const float spikes = 0.62f * (spike(x, y, 0.94f) + spike(y, x, 0.94f)) +
                         0.22f * (spike(diagonalX, diagonalY, 0.46f) + spike(diagonalY, diagonalX, 0.46f));
    const Vec3 color = Vec3{1, 1, 1} * core + Vec3{0.74f, 0.86f, 1.0f} * (halo * fade) +
                       Vec3{0.90f, 0.95f, 1.0f} * (spikes * smoothstep(1.0f, 0.8f, r));
    const Vec3 shown{1 - std::exp(-1.9f * color.x), 1 - std::exp(-1.9f * color.y),
                     1 - std::exp(-1.9f * color.z)};
    return {shown, std::max({shown.x, shown.y, shown.z})};
}

}  // namespace

Bitmap star() {
    return buildBitmap(kSide, kSide, [](int px, int py) {
        return starAt((float(px) + 0.5f) / (kSide / 2) - 1, (float(py) + 0.5f) / (kSide / 2) - 1);
    });
}

}  // namespace qv::assets
