#include "QVFilterExtension/Resources/Assets/EffectPictures/EffectPictures.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/Support/Raster.h"

namespace qv::assets {

namespace {

constexpr int kWidth = 192, kHeight = 480, kFiner = 4;
constexpr float kPi = 3.14159265f;
/// Half a width of the picture is 1, y is down, z is towards the viewer.
constexpr float kHalfHeight = float(kHeight) / kWidth;

/// A place on the ribbon's middle line, wound round an upright axis; `along` 0..1.
Vec3 middle(float along) {
    const float turn = 2 * kPi * (2.15f * along + 0.08f);
    const float radius = 0.80f - 0.16f * std::abs(2 * along - 1);
    return {radius * std::sin(turn), (kHalfHeight - 0.52f) * (2 * along - 1), radius * std::cos(turn)};
}

/// From the middle line to the edge: upright, narrower and bent outwards at the ends.
Vec3 halfWidth(float along) {
    const float end = 2 * along - 1;
    return {0.10f * end, 0.40f - 0.14f * end * end, 0.12f * end};
}

struct Sample {
    float depth = -1e9f, light = 0, cover = 0;
};

/// Satin in the light of a lamp above the viewer's left shoulder; the inside of a turn lies in shadow.
float shade(Vec3 normal, float depth) {
    const Vec3 toLamp = normalize({-0.45f, -0.40f, 0.80f});
    const float diffuse = std::abs(dot(normal, toLamp));
    const Vec3 half = normalize(toLamp + Vec3{0, 0, 1});
    const float gloss = std::pow(std::abs(dot(normal, half)), 18.0f);
    const float inside = mix(0.55f, 1.0f, smoothstep(-0.35f, 0.25f, depth));
    // A red of up to 1.05 tints it: short of white, so that it stays within the alpha.
    return std::min((0.58f + 0.36f * diffuse + 0.30f * gloss) * inside, 0.95f);
}

}  // namespace

Bitmap ribbon() {
    Raster<Sample> fine(kWidth * kFiner, kHeight * kFiner);
    constexpr int kAlong = 9000, kAcross = 900;
    for (int i = 0; i < kAlong; ++i) {
        const float along = (float(i) + 0.5f) / kAlong;
        const Vec3 center = middle(along), ahead = middle(along + 1e-3f), edge = halfWidth(along),
                   edgeAhead = halfWidth(along + 1e-3f);
        for (int j = 0; j < kAcross; ++j) {
            const float across = 2 * (float(j) + 0.5f) / kAcross - 1;
            // The ends are cut aslant.
            const float cut = 0.012f * across;
            if (along < 0.013f + cut || along > 0.987f + cut) continue;
            const Vec3 place = center + edge * across;
            const int x = floorToInt((place.x + 1) * (0.5f * kWidth * kFiner));
            const int y = floorToInt((place.y + kHalfHeight) * (0.5f * kWidth * kFiner));
            if (x < 0 || y < 0 || x >= fine.width() || y >= fine.height()) continue;
            Sample& sample = fine.at(x, y);
            if (sample.depth >= place.z) continue;
            const Vec3 tangent = ahead + edgeAhead * across - place;
            const Vec3 normal = normalize(cross(tangent, edge));
            // Two woven edges.
            const float hem =
                smoothstep(0.80f, 0.84f, std::abs(across)) * smoothstep(0.90f, 0.86f, std::abs(across));
            sample = {place.z, shade(normal, place.z) * (1 - 0.10f * hem), 1};
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
