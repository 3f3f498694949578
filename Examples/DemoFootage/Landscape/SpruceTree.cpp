#include <algorithm>
#include <vector>

#include "Examples/DemoFootage/Landscape/Foreground.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Stroke.h"

namespace qv::assets {
namespace {

constexpr float kX = -6.7f, kHeight = 13.5f;

struct Bough {
    float y, reach, azimuth;  ///< metres, metres, radians: 0 to the right, a quarter turn towards the camera
    std::uint32_t seed;
    float nearness() const { return reach * std::sin(azimuth); }
};

struct Painter {
    const View& view;
    Layer& layer;

    void line(Vec3 from, Vec3 to, float startWidth, float endWidth, Vec3 ambient, Vec3 sun) const {
        const float scale = view.focal / kSpruceDistance;
        stroke(layer, view.column(from.x, kSpruceDistance), view.row(from.y, kSpruceDistance),
               view.column(to.x, kSpruceDistance), view.row(to.y, kSpruceDistance), startWidth * scale,
               endWidth * scale, [&](Lit& pixel, float coverage) {
                   layOver(pixel, Lit{ambient, sun, 1} * coverage);
               });
    }
};

/// A hanging twig with needles on both sides.
void drawTwig(const Painter& painter, Vec3 from, Vec3 along, float size, float light, HashStream& random) {
    const Vec3 albedo = mix(Vec3{0.030f, 0.060f, 0.030f}, Vec3{0.115f, 0.135f, 0.035f}, random.next());
    const int needles = std::max(5, int(size * 90));
    for (int i = 0; i < needles; ++i) {
        const float t = (float(i) + random.next()) / float(needles);
        const Vec3 at = from + along * (t * size) + Vec3{0, -0.10f * t * t * size, 0};
        for (const float side : {-1.0f, 1.0f}) {
            const Vec3 out{side * (-along.y) + 0.7f * along.x, side * along.x + 0.7f * along.y, 0};
            const float length = random.range(0.022f, 0.040f) * (1 - 0.4f * t);
            const float tip = light * random.range(0.55f, 1.25f) * (0.6f + 0.5f * t);
            painter.line(at, at + out * length, 0.0065f, 0.003f, albedo * kSkyLight * (0.25f + 0.6f * light),
                         albedo * kSunLight * (tip * (side * along.x < 0 ? 1.0f : 0.7f)));
        }
    }
}

void drawBough(const Painter& painter, const Bough& bough) {
    HashStream random(bough.seed);
    const float across = bough.reach * std::cos(bough.azimuth), near = std::sin(bough.azimuth);
    const float droop = random.range(0.20f, 0.34f) * bough.reach;
    // The sun stands left: boughs on that side, and those in front, are lit.
    const float facing = clamp01(0.50f - 0.40f * std::cos(bough.azimuth) + 0.33f * near);
    const auto at = [&](float t) {
        return Vec3{kX + across * t,
                    bough.y - droop * t * (1.55f - 0.9f * t) - 0.10f * near * t * bough.reach, 0};
    };
    const Vec3 bark{0.055f, 0.040f, 0.030f};
    constexpr int kPieces = 8;
    for (int i = 0; i < kPieces; ++i) {
        const float t0 = float(i) / kPieces, t1 = float(i + 1) / kPieces;
        painter.line(at(t0), at(t1), 0.035f * (1.1f - t0), 0.035f * (1.1f - t1), bark * kSkyLight * 0.4f,
                     bark * kSunLight * (0.5f * facing));
    }
    const int twigs = int(bough.reach * 26) + 6;
    for (int i = 0; i < twigs; ++i) {
        const float t = 0.12f + 0.88f * (float(i) + random.next()) / float(twigs);
        const Vec3 from = at(t),
                   ahead = normalize(at(std::min(t + 0.02f, 1.02f)) - at(t - 0.02f) + Vec3{1e-4f, 0, 0});
        const float side = random.range(-1, 1);
        const Vec3 along =
            normalize(ahead * 0.8f + Vec3{0.5f * side * near, -0.75f + 0.35f * std::abs(side), 0});
        const float depth = smoothstep(0.05f, 0.9f, t);
        drawTwig(painter, from, along, random.range(0.14f, 0.34f) * (1.15f - 0.55f * t),
                 facing * (0.25f + 0.75f * depth), random);
    }
}

}  // namespace

Layer drawSpruceTree(const View& target, int margin) {
    const View view = target.scaled(2, margin);
    Layer layer(view.width, view.height);
    const Painter painter{view, layer};
    const float foot = bankHeight(kX, kSpruceDistance);
    const float highest =
        std::min(kHeight, target.cameraY + target.horizon / target.focal * kSpruceDistance + 2.0f);

    std::vector<Bough> boughs;
    HashStream random(951);
    for (float y = foot + 1.1f; y < highest; y += 0.042f) {
        const float left = (kHeight - y) / kHeight;
        boughs.push_back({y, (0.35f + 2.75f * std::pow(left, 0.8f)) * random.range(0.7f, 1.1f),
                          random.range(0, 6.2832f), hash32(std::uint32_t(boughs.size()) + 9510u)});
    }
    std::sort(boughs.begin(), boughs.end(),
              [](const Bough& a, const Bough& b) { return a.nearness() < b.nearness(); });
    bool trunk = false;
    for (const Bough& bough : boughs) {
        if (!trunk && bough.nearness() > 0) {
            trunk = true;
            for (float y = foot - 0.3f; y < highest; y += 0.02f) {
                const float width = 0.36f * (kHeight - y) / kHeight + 0.04f;
                for (int i = 0; i < 14; ++i) {
                    const float u = (float(i) + 0.5f) / 7 - 1,
                                bark = 0.3f + 1.3f * fractalNoise(u * 5, y * 2.2f, 4, 952);
                    const Vec3 albedo = Vec3{0.085f, 0.062f, 0.048f} * bark;
                    const Vec3 from{kX + 0.5f * width * u, y, 0}, to = from + Vec3{0, 0.02f, 0};
                    painter.line(from, to, width / 7, width / 7, albedo * kSkyLight * 0.5f,
                                 albedo * kSunLight * (0.8f * clamp01(0.25f - 0.9f * u)));
                }
            }
        }
        if (bough.reach * std::abs(std::cos(bough.azimuth)) > 0.1f) drawBough(painter, bough);
    }
    return layer.halved();
}

}  // namespace qv::assets
