#include <functional>

#include "Examples/DemoFootage/Landscape/Foreground.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"

namespace qv::assets {
namespace {

struct Material {
    Vec3 albedo;
    float open = 1;  ///< how much of the sky it sees
    float gloss = 0;
};

/// Draws surfaces by dicing them finer than pixels.
class Dicer {
  public:
    Dicer(const View& view, bool mirrored)
        : view_(view),
          mirrored_(mirrored),
          layer_(view.width, view.height),
          depth_(view.width, view.height, 1e9f) {}

    using Surface = std::function<Vec3(float, float)>;
    using Texture = std::function<Material(float, float, Vec3)>;

    /// `surface` maps the unit square to the world; `texture` gets u, v and the world position.
    void patch(const Surface& surface, const Texture& texture, bool twoSided = true) {
        const auto screen = [&](float u, float v) {
            Vec3 p = surface(u, v);
            if (mirrored_) p.y = -p.y;
            return Vec3{view_.column(p.x, p.z), view_.row(p.y, p.z), p.z};
        };
        const auto steps = [&](bool alongU) {
            float longest = 0;
            for (int i = 0; i <= 8; ++i) {
                float total = 0;
                Vec3 last = alongU ? screen(0, float(i) / 8) : screen(float(i) / 8, 0);
                for (int j = 1; j <= 8; ++j) {
                    const Vec3 next =
                        alongU ? screen(float(j) / 8, float(i) / 8) : screen(float(i) / 8, float(j) / 8);
                    total += std::hypot(next.x - last.x, next.y - last.y);
                    last = next;
                }
                longest = std::max(longest, total);
            }
            return std::clamp(int(longest * 1.6f) + 2, 2, 6000);
        };
        const int across = steps(true), along = steps(false);
        for (int j = 0; j < along; ++j)
            for (int i = 0; i < across; ++i) {
                const float u = (float(i) + 0.5f) / float(across), v = (float(j) + 0.5f) / float(along);
                const Vec3 at = screen(u, v);
                const int x = int(at.x), y = int(at.y);
                if (at.x < 0 || at.y < 0 || x >= view_.width || y >= view_.height || at.z >= depth_.at(x, y))
                    continue;
                const Vec3 p = surface(u, v);
                if (p.y < 0) continue;
                constexpr float e = 1e-3f;
                Vec3 normal = normalize(
                    cross(surface(u + e, v) - surface(u - e, v), surface(u, v + e) - surface(u, v - e)));
                const Vec3 toEye =
                    normalize(Vec3{view_.cameraX, mirrored_ ? -view_.cameraY : view_.cameraY, 0} - p);
                if (dot(normal, toEye) < 0) {
                    if (!twoSided) continue;
                    normal = normal * -1;
                }
                depth_.at(x, y) = at.z;
                layer_.at(x, y) = shade(texture(u, v, p), normal, toEye);
            }
    }

    /// An upright round post.
    void post(Vec3 foot, float height, float radius, const Vec3& albedo) {
        patch(
            [=](float u, float v) {
                return foot +
                       Vec3{radius * std::cos(6.2832f * u), height * v, radius * std::sin(6.2832f * u)};
            },
            [=](float u, float, Vec3 p) {
                const float grain = fractalNoise(u * 26, p.y * 3 + foot.x, 3, 971);
                return Material{albedo * ((0.5f + 0.8f * grain) * (1 - 0.6f * smoothstep(0.25f, 0.02f, p.y))),
                                0.7f};
            },
            false);
        patch(
            [=](float u, float v) {
                return foot +
                       Vec3{radius * v * std::cos(6.2832f * u), height, radius * v * std::sin(6.2832f * u)};
            },
            [=](float, float v, Vec3) {
                return Material{albedo * (1.1f + 0.3f * std::sin(26 * v)), 1};
            });
    }

    Layer finish() const { return layer_.halved(); }

  private:
    static Lit shade(const Material& material, Vec3 normal, Vec3 toEye) {
        const float facing = std::max(0.0f, dot(normal, kSunDirection));
        const Vec3 half = normalize(toEye + kSunDirection);
        const float glint = material.gloss * std::pow(std::max(0.0f, dot(normal, half)), 60.0f);
        const float sheen = material.gloss * std::pow(1 - clamp01(dot(normal, toEye)), 4.0f);
        return {material.albedo * kSkyLight * (material.open * (0.4f + 0.5f * std::max(0.0f, normal.y))) +
                    kSkyLight * (0.6f * sheen),
                (material.albedo * facing + Vec3{1, 1, 1} * glint) * kSunLight * material.open, 1};
    }

    View view_;
    bool mirrored_;
    Layer layer_;
    Raster<float> depth_;
};

constexpr Vec3 kWeathered{0.30f, 0.265f, 0.235f};

void drawJetty(Dicer& dicer) {
    const Vec3 start{2.5f, 0.52f, 8.2f}, end{3.3f, 0.52f, 18.5f};
    const Vec3 along = end - start, side = normalize({along.z, 0, -along.x}) * 0.72f;
    const float length = qv::assets::length(along);
    const auto planks = [=](float u, float v, Vec3) {
        const float position = v * length / 0.145f, plank = std::floor(position), within = position - plank;
        const float gap = smoothstep(0.0f, 0.07f, within) * smoothstep(1.0f, 0.93f, within);
        const float tone = 0.72f + 0.45f * hash01(int(plank), 3, 972);
        const float grain = fractalNoise(u * 5 + plank * 3.7f, within * 9 + plank * 17, 4, 973);
        const float nail = std::min(std::abs(u - 0.08f), std::abs(u - 0.92f)) * 1.44f < 0.011f &&
                                   std::abs(within - 0.5f) < 0.08f
                               ? 0.35f
                               : 1;
        return Material{kWeathered * (tone * (0.55f + 0.8f * grain) * nail * (0.08f + 0.92f * gap)),
                        0.25f + 0.75f * gap};
    };
    dicer.patch([=](float u, float v) { return start + along * v + side * (2 * u - 1); }, planks);
    for (const float edge : {-1.0f, 1.0f})
        dicer.patch(
            [=](float u, float v) {
                return start + along * v + side * edge + Vec3{0, -0.15f * u, 0};
            },
            [=](float u, float v, Vec3) {
                return Material{kWeathered * (0.45f + 0.5f * fractalNoise(v * 130, u * 7, 3, 974)), 0.5f};
            });
    dicer.patch(
        [=](float u, float v) {
            return end + side * (2 * u - 1) + Vec3{0, -0.15f * v, 0};
        },
        [](float u, float v, Vec3) {
            return Material{kWeathered * (0.4f + 0.5f * fractalNoise(u * 18, v * 5, 3, 975)), 0.5f};
        });
    for (int i = 1; i <= 5; ++i)
        for (const float edge : {-1.0f, 1.0f}) {
            const Vec3 at = start + along * (float(i) / 5 - 0.01f) + side * (edge * 1.08f);
            dicer.post({at.x, -0.6f, at.z}, i == 5 || (i == 3 && edge < 0) ? 1.75f : 1.2f, 0.075f,
                       kWeathered * 0.75f);
        }
}

void drawBoat(Dicer& dicer) {
    // Stern to bow along x of the boat, 3.7 m; drawn turned and moored left of the jetty.
    const Vec3 place{0.75f, 0, 15.2f};
    const float c = std::cos(0.72f), s = std::sin(0.72f);
    const auto toWorld = [=](Vec3 p) { return place + Vec3{c * p.x - s * p.z, p.y, s * p.x + c * p.z}; };
    const auto beam = [](float u) {
        return 0.66f *
               std::pow(std::max(0.0f, 1 - std::pow(std::abs(u * 1.16f - 0.36f) / 0.805f, 2.6f)), 0.62f);
    };
    const auto rim = [](float u) { return 0.40f + 0.26f * u * u * u + 0.05f * (1 - u) * (1 - u); };
    const auto keel = [](float u) { return -0.14f + 0.20f * std::pow(u, 5.0f); };
    // Section at u: v = -1 and 1 at the rims, 0 at the keel.
    const auto hull = [=](float u, float v, float inset) {
        const float w = std::abs(v), half = beam(u) - inset;
        const float out = std::pow(w, 0.62f), up = std::pow(w, 1.9f);
        return Vec3{3.7f * u - 1.85f, mix(keel(u) + inset, rim(u), up), (v < 0 ? -1.0f : 1.0f) * half * out};
    };
    const Vec3 red{0.46f, 0.028f, 0.018f}, white{0.70f, 0.66f, 0.60f}, varnish{0.40f, 0.22f, 0.09f};
    dicer.patch([=](float u, float v) { return toWorld(hull(u, 2 * v - 1, 0)); },
                [=](float u, float v, Vec3 p) {
                    const float w = std::abs(2 * v - 1), lap = w * 5 - std::floor(w * 5);
                    const float worn = 0.82f + 0.3f * fractalNoise(u * 30, w * 9, 4, 981);
                    const Vec3 paint = p.y > rim(u) - 0.075f ? white : red;
                    return Material{paint * (worn * (0.72f + 0.28f * smoothstep(0, 0.16f, lap)) *
                                             (1 - 0.45f * smoothstep(0.09f, 0.01f, p.y))),
                                    0.9f, 0.22f};
                },
                false);
    dicer.patch([=](float u, float v) { return toWorld(hull(u, 1 - 2 * v, 0.035f)); },
                [=](float u, float v, Vec3 p) {
                    const float ribs = std::abs(std::fmod(u * 13, 1.0f) - 0.5f) < 0.09f ? 1.25f : 1.0f;
                    const float grain = 0.7f + 0.5f * fractalNoise(u * 9, v * 40, 3, 982);
                    return Material{varnish * (grain * ribs), 0.28f + 0.72f * smoothstep(-0.05f, 0.45f, p.y)};
                },
                false);
    // The transom closes the stern.
    for (const float inset : {0.0f, 0.035f})
        dicer.patch(
            [=](float u, float v) {
                const Vec3 rimward = hull(0, 2 * u - 1, inset);
                return toWorld({rimward.x + inset, mix(rim(0), rimward.y, v), rimward.z});
            },
            [=](float u, float v, Vec3 p) {
                const float grain = 0.8f + 0.4f * fractalNoise(u * 8, v * 20, 3, 986);
                const Vec3 paint = inset > 0 ? varnish * 0.7f : p.y > rim(0) - 0.075f ? white : red;
                return Material{paint * grain, 0.8f, 0.1f};
            });
    for (const float sideOf : {-1.0f, 1.0f})
        dicer.patch(
            [=](float u, float v) {
                const Vec3 outer = hull(u, sideOf, -0.02f), inner = hull(u, sideOf, 0.05f);
                return toWorld(mix(outer, inner, v) + Vec3{0, 0.022f, 0});
            },
            [=](float u, float, Vec3) {
                return Material{varnish * (1.1f + 0.5f * fractalNoise(u * 60, 1, 3, 983)), 1, 0.3f};
            });
    for (const float at : {0.20f, 0.50f, 0.76f})
        dicer.patch(
            [=](float u, float v) {
                const float station = at + 0.075f * (u - 0.5f), half = beam(station) * 0.84f - 0.03f;
                return toWorld({3.7f * station - 1.85f, 0.30f, half * (2 * v - 1)});
            },
            [=](float u, float v, Vec3) {
                return Material{varnish * (0.9f + 0.7f * fractalNoise(u * 4, v * 22, 3, 984)), 0.9f, 0.15f};
            });
    // A pair of oars laid over the seats, and the line to the jetty.
    const auto rod = [&](Vec3 from, Vec3 to, float sag, float radius, Vec3 albedo) {
        dicer.patch(
            [=](float u, float v) {
                const Vec3 axis = mix(from, to, v) + Vec3{0, -sag * 4 * v * (1 - v), 0};
                return axis + Vec3{radius * std::cos(6.2832f * u), radius * std::sin(6.2832f * u), 0};
            },
            [=](float, float v, Vec3) {
                return Material{albedo * (0.85f + 0.3f * noise(v * 90, 1, 985)), 1, 0.1f};
            });
    };
    for (const float sideOf : {-0.22f, 0.26f}) {
        rod(toWorld({-1.35f, 0.36f, sideOf}), toWorld({0.75f, 0.38f, 0.6f * sideOf}), 0, 0.024f,
            varnish * 1.3f);
        dicer.patch(
            [=](float u, float v) {
                return toWorld({0.75f + 0.5f * v, 0.385f, 0.6f * sideOf + 0.075f * (2 * u - 1)});
            },
            [=](float, float v, Vec3) {
                return Material{v > 0.6f ? white : varnish * 1.3f, 1, 0.2f};
            });
    }
    rod(toWorld({1.80f, 0.62f, 0}), {2.42f, 1.0f, 17.9f}, 0.16f, 0.013f, {0.34f, 0.29f, 0.20f});
}

}  // namespace

Layer drawJettyAndBoat(const View& target, int margin, bool mirrored) {
    Dicer dicer(target.scaled(2, margin), mirrored);
    drawJetty(dicer);
    drawBoat(dicer);
    return dicer.finish();
}

}  // namespace qv::assets
