#include "QVFilterExtension/Resources/Assets/EffectPictures/EffectPictures.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"

namespace qv::assets {

namespace {

constexpr int kSide = 768;

/// Height of the beaten leaf: broad waves, and creases where folded layers meet.
float heightAt(float x, float y) {
    const float warpX = fractalNoise(3 * x + 5.2f, 3 * y + 1.3f, 4, 301) - 0.5f;
    const float warpY = fractalNoise(3 * x + 8.7f, 3 * y + 6.1f, 4, 317) - 0.5f;
    const float u = x + 0.35f * warpX, v = y + 0.35f * warpY;
    const float waves = fractalNoise(7 * u, 7 * v, 3, 331);
    const float folds = 1 - std::abs(2 * fractalNoise(11 * u + 3.3f, 11 * v + 9.9f, 4, 347) - 1);
    return 0.11f * waves + 0.045f * folds * folds;
}

Rgba leafAt(int px, int py) {
    const float step = 1.0f / kSide;
    const float x = (float(px) + 0.5f) * step, y = (float(py) + 0.5f) * step;
    const float here = heightAt(x, y);
    const Vec3 normal =
        normalize({(here - heightAt(x + step, y)) / step, (here - heightAt(x, y + step)) / step, 1});
    // A bright room mirrored in metal: a window above, a lamp low at the side, a dark floor.
    const auto light = [&](Vec3 from, float sharpness) {
        return std::pow(std::max(dot(normal, normalize(from)), 0.0f), sharpness);
    };
    const float sky = smoothstep(-0.55f, 0.65f, -normal.y + 0.25f * normal.x);
    const float tone = 0.20f + 0.52f * sky + 0.75f * light({-0.35f, -0.55f, 0.8f}, 22) +
                       0.40f * light({0.6f, 0.25f, 0.75f}, 30) + 0.05f * (hash01(px, py, 353) - 0.5f);
    const float bright = 1 - std::exp(-1.75f * tone);
    // From umber in the hollows over gold to nearly white where it glints.
    const Vec3 umber{0.33f, 0.17f, 0.03f}, gold{0.93f, 0.68f, 0.22f}, glint{1.0f, 0.97f, 0.82f};
    const Vec3 color = bright < 0.6f ? mix(umber, gold, smoothstep(0.12f, 0.6f, bright))
                                     : mix(gold, glint, smoothstep(0.6f, 0.92f, bright));
    return {color, 1};
}

}  // namespace

Bitmap goldLeaf() {
    return buildBitmap(kSide, kSide, leafAt);
}

}  // namespace qv::assets
