#include "Examples/DemoFootage/Dancer/Figure.h"

#include <cmath>
#include <vector>

#include "QVFilterExtension/Resources/Assets/Support/Noise.h"

namespace qv::assets {
namespace {

enum class Material { skin, face, beanie, hair, jacket, sleeve, trousers, shoe, sole };

/// A tapering round limb.
struct Limb {
    Vec3 from, to;
    float startRadius, endRadius;
    Material material;
    Vec3 outside{};   ///< the side that carries a stripe
    float folds = 0;  ///< how much the cloth creases
};

std::vector<Limb> limbsOf(const Pose& p) {
    std::vector<Limb> limbs;
    const auto add = [&](Vec3 a, Vec3 b, float ra, float rb, Material m, Vec3 outside = {}, float folds = 0) {
        limbs.push_back({a, b, ra, rb, m, outside, folds});
    };
    const Vec3 up = normalize(cross(p.forward, p.right));
    add(p.tailRoot, p.tailMiddle, 0.030f, 0.036f, Material::hair);
    add(p.tailMiddle, p.tailTip, 0.036f, 0.012f, Material::hair);
    for (std::size_t i = 0; i < 2; ++i) {
        const Vec3 out = p.right * (i ? 1.0f : -1.0f);
        const Vec3 footAxis = normalize(p.toes[i] - p.ankles[i]);
        add(p.hips[i], p.knees[i], 0.098f, 0.074f, Material::trousers, out, 0.5f);
        add(p.knees[i], mix(p.knees[i], p.ankles[i], 0.93f), 0.074f, 0.063f, Material::trousers, out, 1);
        add(p.ankles[i] - footAxis * 0.03f, p.toes[i], 0.050f, 0.040f, Material::shoe);
        add(p.ankles[i] - footAxis * 0.045f + Vec3{0, -0.035f, 0}, p.toes[i] + Vec3{0, -0.018f, 0}, 0.030f,
            0.027f, Material::sole);
        add(p.shoulders[i], p.elbows[i], 0.066f, 0.055f, Material::sleeve, {}, 0.8f);
        add(p.elbows[i], mix(p.elbows[i], p.wrists[i], 0.95f), 0.056f, 0.044f, Material::sleeve, {}, 1);
        add(p.wrists[i], p.hands[i], 0.030f, 0.032f, Material::skin);
        const Vec3 along = normalize(p.hands[i] - p.wrists[i]);
        const Vec3 across = normalize(cross(along, p.forward) + Vec3{1e-3f, 0, 0});
        for (int finger = 0; finger < 4; ++finger) {
            const Vec3 base = p.hands[i] + across * (0.016f * (float(finger) - 1.5f)) + along * 0.012f;
            add(base,
                base + along * (finger == 0 || finger == 3 ? 0.055f : 0.068f) +
                    across * (0.008f * (float(finger) - 1.5f)),
                0.0105f, 0.008f, Material::skin);
        }
        add(p.hands[i] - along * 0.03f, p.hands[i] + along * 0.022f + across * (i ? -0.045f : 0.045f), 0.014f,
            0.010f, Material::skin);
    }
    add(p.hips[0], p.hips[1], 0.105f, 0.105f, Material::trousers, {}, 0.4f);
    for (const float side : {-1.0f, 1.0f}) {
        const Vec3 lower = p.pelvis + p.right * (0.055f * side) + Vec3{0, 0.06f, 0};
        const Vec3 middle = p.waist + p.right * (0.058f * side),
                   upper = p.chest + p.right * (0.075f * side) - up * 0.03f;
        add(lower, middle, 0.112f, 0.108f, Material::jacket, {}, 0.9f);
        add(middle, upper, 0.108f, 0.112f, Material::jacket, {}, 0.7f);
        add(p.chest + up * 0.03f, p.chest + p.right * (0.150f * side) + up * 0.015f, 0.085f, 0.068f,
            Material::jacket, {}, 0.4f);
    }
    add(p.pelvis - p.right * 0.068f + Vec3{0, 0.012f, 0}, p.pelvis + p.right * 0.068f + Vec3{0, 0.012f, 0},
        0.117f, 0.117f, Material::jacket, {}, 0.3f);
    // Collar, neck, head with its woollen cap.
    add(p.chest + up * 0.055f - p.forward * 0.03f, p.neck + p.forward * 0.01f, 0.082f, 0.056f,
        Material::jacket, {}, 0.5f);
    add(p.neck, p.head, 0.047f, 0.050f, Material::skin);
    const Vec3 headUp = normalize(cross(p.headForward, p.headRight));
    add(p.head - headUp * 0.035f + p.headForward * 0.022f, p.head + headUp * 0.035f, 0.071f, 0.098f,
        Material::face);
    add(p.head - headUp * 0.012f + p.headForward * 0.088f, p.head + headUp * 0.012f + p.headForward * 0.082f,
        0.015f, 0.010f, Material::face);
    add(p.head + headUp * 0.062f - p.headForward * 0.012f, p.head + headUp * 0.095f - p.headForward * 0.02f,
        0.101f, 0.082f, Material::beanie);
    add(p.head - headUp * 0.01f - p.headForward * 0.04f, p.head + headUp * 0.04f - p.headForward * 0.03f,
        0.085f, 0.095f, Material::hair);
    return limbs;
}

/// What is seen of a limb in one pixel.
struct Hit {
    float coverage, depth, along;
    Vec3 normal;
};

/// A limb on the picture: its two ends, projected.
class Projection {
  public:
    Projection(const StageView& view, const Limb& limb)
        : limb_(limb),
          x0_(view.column(limb.from)),
          y0_(view.row(limb.from)),
          dx_(view.column(limb.to) - x0_),
          dy_(view.row(limb.to) - y0_),
          r0_(limb.startRadius * view.scale(limb.from.z)),
          r1_(limb.endRadius * view.scale(limb.to.z)),
          squared_(std::max(dx_ * dx_ + dy_ * dy_, 1e-3f)),
          axis_(normalize(limb.to - limb.from)),
          roundEnds_(length(limb.to - limb.from) / std::max(limb.startRadius, limb.endRadius)) {
        const float reach = std::max(r0_, r1_) + 1.5f;
        left = std::max(0, int(std::min(x0_, x0_ + dx_) - reach));
        right = std::min(view.width - 1, int(std::max(x0_, x0_ + dx_) + reach));
        top = std::max(0, int(std::min(y0_, y0_ + dy_) - reach));
        bottom = std::min(view.height - 1, int(std::max(y0_, y0_ + dy_) + reach));
    }

    bool at(int x, int y, Hit& hit) const {
        const float px = float(x) + 0.5f - x0_, py = float(y) + 0.5f - y0_;
        hit.along = clamp01((px * dx_ + py * dy_) / squared_);
        const float r = mix(r0_, r1_, hit.along);
        const float ex = px - hit.along * dx_, ey = py - hit.along * dy_;
        const float d = std::sqrt(ex * ex + ey * ey);
        hit.coverage = clamp01((r - d) * 0.8f + 0.5f);
        if (hit.coverage <= 0) return false;
        const float k = std::min(d / r, 1.0f) / std::max(d, 1e-4f),
                    out = std::sqrt(std::max(0.0f, 1 - k * k * d * d));
        hit.normal = {ex * k, -ey * k, out};
        // Between the ends the surface faces square to the limb, which may lean towards the camera.
        const float straight = smoothstep(0.0f, 1.0f, std::min(hit.along, 1 - hit.along) * roundEnds_);
        hit.depth = mix(limb_.from.z, limb_.to.z, hit.along) +
                    out * mix(limb_.startRadius, limb_.endRadius, hit.along);
        hit.normal = normalize(hit.normal - axis_ * (straight * dot(hit.normal, axis_)));
        return true;
    }

    int left, right, top, bottom;

  private:
    const Limb& limb_;
    float x0_, y0_, dx_, dy_, r0_, r1_, squared_;
    Vec3 axis_;
    float roundEnds_;
};

Vec3 albedoOf(const Limb& limb, const Hit& hit, const Pose& pose, Vec3 point) {
    switch (limb.material) {
        case Material::skin:
            return {0.50f, 0.27f, 0.17f};
        case Material::hair: {
            const float strands = 0.6f + 0.8f * noise(hit.normal.x * 14, hit.along * 5, 41);
            return Vec3{0.10f, 0.042f, 0.022f} * strands;
        }
        case Material::beanie: {
            const Vec3 headUp = normalize(cross(pose.headForward, pose.headRight));
            const float height = dot(point - pose.head, headUp), lateral = dot(hit.normal, pose.headRight);
            const float ribs = 0.80f + 0.20f * std::sin(lateral * 46);
            return height < 0.075f ? Vec3{0.62f, 0.30f, 0.020f} * ribs
                                   : Vec3{0.74f, 0.37f, 0.025f} * (0.9f + 0.1f * ribs);
        }
        case Material::face: {
            const Vec3 headUp = normalize(cross(pose.headForward, pose.headRight));
            const Vec3 local = point - pose.head;
            const float side = dot(local, pose.headRight), height = dot(local, headUp),
                        front = dot(local, pose.headForward);
            Vec3 skin{0.52f, 0.28f, 0.175f};
            if (front < 0) return skin;
            skin = mix(skin, Vec3{0.56f, 0.19f, 0.13f},
                       0.4f * smoothstep(0.030f, 0.0f, std::hypot(std::abs(side) - 0.045f, height + 0.022f)));
            const float lips = smoothstep(0.0045f, 0.002f, std::abs(height + 0.052f - 6 * side * side)) *
                               smoothstep(0.030f, 0.022f, std::abs(side));
            skin = mix(skin, Vec3{0.30f, 0.055f, 0.050f}, lips);
            // Sunglasses: two rounded lenses and a bridge.
            const float lens = std::max(std::abs(std::abs(side) - 0.036f) - 0.029f,
                                        std::abs(height - 0.020f - 0.08f * std::abs(side)) - 0.020f);
            const float bridge = std::max(std::abs(side) - 0.1f, std::abs(height - 0.032f) - 0.0045f);
            const float glasses = smoothstep(0.002f, -0.002f, std::min(lens, bridge));
            return mix(skin, Vec3{0.010f, 0.010f, 0.014f}, glasses);
        }
        case Material::sleeve:
            return {0.030f, 0.20f, 0.235f};
        case Material::jacket: {
            const float height = dot(point - pose.waist, normalize(pose.chest - pose.waist));
            const float side = dot(point - pose.chest, pose.right), front = dot(hit.normal, pose.forward);
            Vec3 cloth{0.030f, 0.20f, 0.235f};
            cloth = mix(cloth, Vec3{0.74f, 0.70f, 0.62f}, smoothstep(0.148f, 0.144f, height));
            cloth = mix(cloth, Vec3{0.80f, 0.155f, 0.030f}, smoothstep(0.092f, 0.088f, height));
            if (front > 0)
                cloth = mix(cloth, Vec3{0.30f, 0.30f, 0.32f}, smoothstep(0.0055f, 0.0035f, std::abs(side)));
            return cloth;
        }
        case Material::trousers: {
            const float stripe = dot(hit.normal, limb.outside);
            const Vec3 cloth{0.042f, 0.044f, 0.062f};
            return mix(cloth, Vec3{0.80f, 0.155f, 0.030f}, smoothstep(0.925f, 0.945f, stripe));
        }
        case Material::shoe:
            return mix(Vec3{0.72f, 0.71f, 0.69f}, Vec3{0.80f, 0.155f, 0.030f},
                       smoothstep(0.35f, 0.42f, hit.along) * smoothstep(0.62f, 0.55f, hit.along));
        case Material::sole:
            return {0.60f, 0.60f, 0.60f};
    }
    return {};
}

Vec3 lit(Vec3 albedo, Vec3 n, const RimLights& rims, bool glossy) {
    static const Vec3 kKey = normalize({-0.50f, 0.62f, 0.68f}), kCyan = normalize({-0.92f, 0.25f, -0.38f}),
                      kMagenta = normalize({0.92f, 0.22f, -0.36f});
    const float key = std::max(0.0f, (dot(n, kKey) + 0.18f) / 1.18f);
    const float cyan = std::max(0.0f, dot(n, kCyan)), magenta = std::max(0.0f, dot(n, kMagenta));
    const float fresnel = (1 - n.z) * (1 - n.z);
    Vec3 light = Vec3{0.085f, 0.095f, 0.16f} * (0.75f + 0.35f * n.y) +
                 Vec3{0.11f, 0.05f, 0.09f} * std::max(0.0f, -n.y);
    light += Vec3{1.70f, 1.38f, 1.08f} * key;
    light += Vec3{0.25f, 1.70f, 2.50f} * (rims.cyan * cyan * 1.25f) +
             Vec3{2.70f, 0.30f, 1.55f} * (rims.magenta * magenta * 1.25f);
    Vec3 color = albedo * light;
    color += Vec3{0.10f, 0.62f, 0.95f} * (0.30f * rims.cyan * cyan * fresnel) +
             Vec3{1.0f, 0.10f, 0.55f} * (0.30f * rims.magenta * magenta * fresnel);
    const Vec3 half = normalize(kKey + Vec3{0, 0, 1});
    const float gleam = std::pow(std::max(0.0f, dot(n, half)), glossy ? 90.0f : 12.0f);
    return color + Vec3{1.7f, 1.4f, 1.1f} * (gleam * (glossy ? 0.9f : 0.018f));
}

}  // namespace

Raster<Painted> drawFigure(const StageView& view, const Pose& pose, const RimLights& rims) {
    const std::vector<Limb> limbs = limbsOf(pose);
    Raster<float> front(view.width, view.height, -1e9f);
    Raster<float> coverage(view.width, view.height);
    int left = view.width, right = -1, top = view.height, bottom = -1;
    for (const Limb& limb : limbs) {
        const Projection projection(view, limb);
        left = std::min(left, projection.left), right = std::max(right, projection.right);
        top = std::min(top, projection.top), bottom = std::max(bottom, projection.bottom);
        Hit hit;
        for (int y = projection.top; y <= projection.bottom; ++y)
            for (int x = projection.left; x <= projection.right; ++x) {
                if (!projection.at(x, y, hit)) continue;
                coverage.at(x, y) = std::max(coverage.at(x, y), hit.coverage);
                front.at(x, y) = std::max(front.at(x, y), hit.depth - 0.02f * (1 - hit.coverage));
            }
    }
    // Near surfaces flow into one another: the nearer, the heavier. Forms blend wide, colours hardly.
    struct Sum {
        Vec3 normal, albedo;
        float forms = 0, colors = 0;
        bool glossy = false;
    };
    Raster<Sum> sums(std::max(right - left + 1, 0), std::max(bottom - top + 1, 0));
    int index = 0;
    for (const Limb& limb : limbs) {
        const Projection projection(view, limb);
        ++index;
        Hit hit;
        for (int y = projection.top; y <= projection.bottom; ++y)
            for (int x = projection.left; x <= projection.right; ++x) {
                if (!projection.at(x, y, hit)) continue;
                const float behind = hit.depth - 0.02f * (1 - hit.coverage) - front.at(x, y);
                if (behind < -0.06f) continue;
                Sum& sum = sums.at(x - left, y - top);
                const float form = hit.coverage * std::exp(behind / 0.011f),
                            color = hit.coverage * std::exp(behind / 0.0022f);
                Vec3 normal = hit.normal;
                if (limb.folds > 0) {
                    const NoiseSample crease = noiseWithSlope(hit.along * 5.5f + float(index) * 7,
                                                              hit.normal.x * 1.6f + hit.along * 2, 51);
                    normal += Vec3{0.10f * crease.dy, -0.16f * crease.dx, 0} * limb.folds;
                }
                sum.normal += normal * form;
                sum.forms += form;
                const float scale = view.scale(hit.depth);
                const Vec3 point{(float(x) + 0.5f - 0.5f * float(view.width)) / scale + view.cameraX,
                                 (view.horizon - float(y) - 0.5f) / scale + view.cameraY, hit.depth};
                const Vec3 albedo = albedoOf(limb, hit, pose, point);
                sum.albedo += albedo * color;
                sum.colors += color;
                if (behind > -0.001f) sum.glossy = limb.material == Material::face && albedo.x < 0.05f;
            }
    }
    Raster<Painted> figure(view.width, view.height);
    for (int y = top; y <= bottom; ++y)
        for (int x = left; x <= right; ++x) {
            const float alpha = coverage.at(x, y);
            const Sum& sum = sums.at(x - left, y - top);
            if (alpha <= 0 || sum.colors <= 0) continue;
            const Vec3 color = lit(sum.albedo * (1 / sum.colors), normalize(sum.normal), rims, sum.glossy);
            figure.at(x, y) = Painted{color, 1} * alpha;
        }
    return figure;
}

}  // namespace qv::assets
