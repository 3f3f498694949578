#include <cmath>

#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/IcePictures/IcePictures.h"
#include "QVFilterExtension/Resources/Assets/Support/Stroke.h"

namespace qv::assets {

namespace {

constexpr float kPi = 3.14159265f;
constexpr float kBranching = kPi / 3;  // ice grows at angles of 60 degrees

/// Ferns of ice: heights 0..1 of their needles.
class Ferns {
  public:
    Ferns(int width, int height) : heights_(width, height), draw_(31) {
        const float unit = float(std::min(width, height)) / 720;
        // From the borders inwards, at slants.
        const float around = 2 * float(width + height);
        for (float at = 0; at < around; at += unit * draw_.range(10, 24)) {
            const auto [x, y, inwards] = onBorder(at);
            const bool isLong = draw_.next() < 0.3f;
            const float length = unit * (isLong ? draw_.range(150, 310) : draw_.range(50, 140));
            grow(x, y, inwards + draw_.range(-0.8f, 0.8f), length, unit * (isLong ? 1.9f : 1.5f), 2);
        }
        // Stars of six arms between them.
        for (int i = 0; i < 60; ++i) {
            const float x = draw_.next() * float(width), y = draw_.next() * float(height);
            const float angle = draw_.next() * kBranching, length = unit * draw_.range(8, 26);
            for (int arm = 0; arm < 6; ++arm)
                grow(x, y, angle + kBranching * float(arm), length, unit * 1.1f, 1);
        }
    }

    const Raster<float>& heights() const { return heights_; }

  private:
    struct Place {
        float x, y, inwards;
    };

    Place onBorder(float at) const {
        const float w = float(heights_.width()), h = float(heights_.height());
        if (at < w) return {at, 0, kPi / 2};
        if (at < w + h) return {w, at - w, kPi};
        if (at < 2 * w + h) return {2 * w + h - at, h, -kPi / 2};
        return {0, 2 * (w + h) - at, 0};
    }

    /// A needle that bends, feathered on both sides with branches that are the shorter the nearer its tip.
    void grow(float x, float y, float angle, float length, float width, int depth) {
        const int steps = std::max(3, int(length / (depth == 2 ? 5.5f : 4.5f)));
        const float step = length / float(steps);
        const float bend = draw_.range(-1, 1) * (depth == 2 ? 1.1f : 0.5f) / float(steps);
        for (int i = 0; i < steps; ++i) {
            const float left = 1 - float(i) / float(steps);
            const float nextX = x + step * std::cos(angle), nextY = y + step * std::sin(angle);
            const float bright = (0.3f + 0.5f * left) * (depth == 2 ? 1 : 0.62f);
            stroke(heights_, x, y, nextX, nextY, width * left, width * (left - 1 / float(steps)),
                   [&](float& height, float cover) { height = std::max(height, bright * cover); });
            x = nextX;
            y = nextY;
            angle += bend;
            if (depth == 0 || i == 0) continue;
            for (float side : {-kBranching, kBranching}) {
                if (draw_.next() < 0.25f) continue;
                const float share = depth == 2 ? draw_.range(0.12f, 0.3f) : draw_.range(0.2f, 0.4f);
                grow(x, y, angle + side * draw_.range(0.75f, 1.05f), length * (0.25f + 0.75f * left) * share,
                     width * 0.7f, depth - 1);
            }
        }
    }

    Raster<float> heights_;
    HashStream draw_;
};

}  // namespace

Bitmap frost(int width, int height) {
    const Ferns ferns(width, height);
    const Raster<float>& needles = ferns.heights();
    const float shortSide = float(std::min(width, height));
    return buildBitmap(width, height, [&](int px, int py) {
        const float x = (float(px) + 0.5f) / shortSide, y = (float(py) + 0.5f) / shortSide;
        const float right = float(width) / shortSide - x, bottom = float(height) / shortSide - y;
        const float depth = std::min({x, y, right, bottom});
        // The sheet that the ferns grow from: torn, veined, thickest at the corners.
        const float corner = smoothstep(0.55f, 0.0f, std::hypot(std::min(x, right), std::min(y, bottom)));
        const float cloud = fractalNoise(x * 5, y * 5, 5, 3), vein = fractalNoise(x * 17, y * 17, 4, 9);
        const float reach = 0.05f + 0.17f * cloud + 0.16f * corner;
        const float sheet = smoothstep(reach + 0.10f, reach - 0.06f, depth);
        const float plates = 1 - std::abs(2 * vein - 1);

        const float needle = needles.at(px, py);
        float soft = 0;
        for (int dy = -2; dy <= 2; dy += 2)
            for (int dx = -2; dx <= 2; dx += 2) soft += needles.clamped(px + dx, py + dy) / 9;
        // Lit from the upper left.
        const float slope = needles.clamped(px - 1, py - 1) - needles.clamped(px + 1, py + 1);
        const float thin = smoothstep(0.62f, 0.08f, depth);
        const float alpha = clamp01(sheet * (0.38f + 0.4f * plates * plates) + 0.55f * needle + 0.9f * soft +
                                    0.10f * thin * cloud);
        const float light = clamp01(0.25f + 0.6f * needle + 0.7f * soft + 0.3f * sheet * plates -
                                    0.35f * slope + 0.2f * (cloud - 0.5f));
        const Vec3 color = mix(Vec3{0.47f, 0.70f, 0.90f}, Vec3{0.97f, 0.99f, 1.0f}, light);
        return Rgba{color * alpha, alpha};
    });
}

}  // namespace qv::assets
