#include "QVFilterExtension/Resources/Assets/EffectPictures/EffectPictures.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/Support/Raster.h"

namespace qv::assets {

namespace {

constexpr int kWidth = 256, kHeight = 128, kFiner = 4;
constexpr float kPi = 3.14159265f;

/// A place on the ribbon's middle line; `along` 0..1. Half a width of the picture is 1, y is down, z is
/// towards the viewer.
Vec3 middle(float along) {
    const float wave = 2 * kPi * (0.92f * along + 0.04f);
    return {mix(-0.82f, 0.82f, along), 0.115f * std::sin(wave), 0.34f * std::cos(wave)};
}

/// From the middle line to the edge: upright, leaning forth and back as the ribbon twists.
Vec3 halfWidth(float along) {
    const float lean = 0.95f * std::sin(2 * kPi * (0.80f * along + 0.18f));
    return Vec3{0.22f * std::cos(2 * kPi * along) + 0.12f, std::cos(lean), std::sin(lean)} * 0.31f;
}

struct Sample {
    float depth = -1e9f, light = 0, cover = 0;
};

/// Satin in the light of a lamp above the viewer's left shoulder.
float shade(Vec3 normal) {
    const Vec3 toLamp = normalize({-0.35f, -0.62f, 0.70f});
    const float diffuse = std::abs(dot(normal, toLamp));
    const Vec3 half = normalize(toLamp + Vec3{0, 0, 1});
    const float gloss = std::pow(std::abs(dot(normal, half)), 14.0f);
    const float backside = normal.z < 0 ? 0.9f : 1.0f;
    return clamp01((0.62f + 0.38f * diffuse) * backside + 0.25f * gloss);
}

}  // namespace

Bitmap ribbon() {
    Raster<Sample> fine(kWidth * kFiner, kHeight * kFiner);
    constexpr int kAlong = 5200, kAcross = 1400;
    for (int i = 0; i < kAlong; ++i) {
        const float along = (float(i) + 0.5f) / kAlong;
        const Vec3 center = middle(along), ahead = middle(along + 1e-3f), edge = halfWidth(along),
                   edgeAhead = halfWidth(along + 1e-3f);
        for (int j = 0; j < kAcross; ++j) {
            const float across = 2 * (float(j) + 0.5f) / kAcross - 1;
            // The ends are cut aslant.
            const float cut = 0.018f * across;
            if (along < 0.02f + cut || along > 0.98f + cut) continue;
            const Vec3 place = center + edge * across;
            const int x = floorToInt((place.x + 1) * (0.5f * kWidth * kFiner));
            const int y = floorToInt((place.y + 0.5f) * (0.5f * kWidth * kFiner));
            if (x < 0 || y < 0 || x >= fine.width() || y >= fine.height()) continue;
            Sample& sample = fine.at(x, y);
            if (sample.depth >= place.z) continue;
            const Vec3 tangent = ahead + edgeAhead * across - place;
            const Vec3 normal = normalize(cross(tangent, edge));
            // Two woven edges.
            const float hem =
                smoothstep(0.80f, 0.84f, std::abs(across)) * smoothstep(0.90f, 0.86f, std::abs(across));
            sample = {place.z, shade(normal) * (1 - 0.10f * hem), 1};
        }
    }
    return buildBitmap(kWidth, kHeight, [&](int px, int py) {
        float light = 0, cover = 0;
        for (int j = 0; j < kFiner; ++j)
            for (int i = 0; i < kFiner; ++i) {
                const Sample& sample = fine.at(px * kFiner + i, py * kFiner + j);
                light += sample.light * sample.cover;
                cover += sample.cover;
            }
        constexpr float kShare = 1.0f / (kFiner * kFiner);
        return Rgba{Vec3{1, 1, 1} * (light * kShare), cover * kShare};
    });
}

}  // namespace qv::assets
