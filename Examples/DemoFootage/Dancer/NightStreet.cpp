#include "Examples/DemoFootage/Dancer/NightStreet.h"

#include <cmath>

#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Stroke.h"

namespace qv::assets {
namespace {

constexpr float kCityDistance = 26;  ///< metres
constexpr int kBlur = 9;             ///< pixels at 720 rows: the radius of a light that is out of focus

void fill(Raster<Vec3>& raster, float left, float top, float right, float bottom, Vec3 color) {
    for (int y = std::max(0, int(top)); y < std::min(raster.height(), int(bottom)); ++y)
        for (int x = std::max(0, int(left)); x < std::min(raster.width(), int(right)); ++x)
            raster.at(x, y) = color;
}

void addLine(Raster<Vec3>& raster, float x0, float y0, float x1, float y1, float width, Vec3 light) {
    stroke(raster, x0, y0, x1, y1, width, width,
           [&](Vec3& pixel, float coverage) { pixel += light * coverage; });
}

/// Spreads every pixel over a disc, as an open lens does.
Raster<Vec3> outOfFocus(const Raster<Vec3>& sharp, int radius) {
    Raster<Vec3> soft(sharp.width(), sharp.height());
    std::vector<int> half;
    float area = 0;
    for (int dy = -radius; dy <= radius; ++dy) {
        half.push_back(
            int(std::lround(std::sqrt(float((radius + 0.5f) * (radius + 0.5f)) - float(dy * dy)))));
        area += float(2 * half.back() + 1);
    }
    std::vector<Vec3> sums(std::size_t(sharp.width()) + 1);
    for (int source = 0; source < sharp.height(); ++source) {
        for (int x = 0; x < sharp.width(); ++x)
            sums[std::size_t(x) + 1] = sums[std::size_t(x)] + sharp.at(x, source);
        for (int dy = -radius; dy <= radius; ++dy) {
            const int y = source + dy;
            if (y < 0 || y >= sharp.height()) continue;
            const int reach = half[std::size_t(dy + radius)];
            for (int x = 0; x < sharp.width(); ++x) {
                const int from = std::max(0, x - reach), to = std::min(sharp.width(), x + reach + 1);
                soft.at(x, y) += (sums[std::size_t(to)] - sums[std::size_t(from)]) * (1 / area);
            }
        }
    }
    return soft;
}

constexpr Vec3 kLampColors[] = {
    {1.0f, 0.62f, 0.26f}, {1.0f, 0.72f, 0.40f}, {0.75f, 0.85f, 1.0f}, {1.0f, 0.50f, 0.18f}};

/// Houses along the street that closes in towards the middle, with windows, shop fronts and lamps.
Raster<Vec3> houses(int width, int height, int curb, float unit) {
    Raster<Vec3> city(width, height);
    for (int y = 0; y < height; ++y) {
        const float low = smoothstep(0.0f, float(curb), float(y));
        for (int x = 0; x < width; ++x) {
            const float middle = std::exp(-std::pow((float(x) / float(width) - 0.5f) * 3.4f, 2.0f));
            city.at(x, y) = mix(Vec3{0.010f, 0.014f, 0.040f}, Vec3{0.085f, 0.045f, 0.085f}, low) +
                            Vec3{0.16f, 0.075f, 0.085f} * (middle * low * low);
        }
    }
    HashStream random(71);
    for (int depth = 0; depth < 3; ++depth) {
        const float near = float(depth) / 2;
        for (float x = -0.1f; x < 1.1f;) {
            const float wide = random.range(0.07f, 0.13f) * (0.75f + 0.6f * near);
            const float aside = std::abs(x + 0.5f * wide - 0.5f) * 2;  // 0 in the middle of the street
            const float left = x * float(width), right = (x + wide) * float(width);
            x += wide;
            // Nearer houses stand only at the sides.
            if (aside < 0.32f * near + 0.02f) continue;
            const float top = float(curb) * (1 - random.range(0.40f, 0.72f) - 0.30f * near * aside);
            const Vec3 wall = mix(Vec3{0.016f, 0.018f, 0.036f}, Vec3{0.040f, 0.028f, 0.036f}, random.next()) *
                              (1.2f - 0.5f * near);
            fill(city, left, top, right, float(curb), wall);
            const float pane = unit * (0.012f + 0.007f * near), gap = pane * random.range(0.65f, 1.1f);
            const float busy = random.range(0.18f, 0.50f);
            const Vec3 glow = kLampColors[std::size_t(random.range(0, 3.99f))];
            for (float wy = top + pane; wy < float(curb) - 5 * pane; wy += pane * 1.5f + gap)
                for (float wx = left + gap; wx < right - pane; wx += pane + gap)
                    if (random.next() < busy)
                        fill(city, wx, wy, wx + pane, wy + pane * 1.3f,
                             glow * (0.25f + 1.3f * std::pow(random.next(), 3.0f)));
            // The shop on the ground floor.
            if (random.next() < 0.75f) {
                const Vec3 light = mix(glow, Vec3{0.9f, 0.95f, 1.0f}, 0.4f) * random.range(0.5f, 1.5f);
                fill(city, left + 0.1f * (right - left), float(curb) - 4.2f * pane,
                     right - 0.1f * (right - left), float(curb) - 0.8f * pane, light);
            }
        }
    }
    // Street lamps in two rows, and small bright points far down the street.
    for (int i = 1; i <= 7; ++i)
        for (const float side : {-1.0f, 1.0f}) {
            const float away = 1.0f / float(i), x = float(width) * (0.5f + side * 0.62f * away),
                        y = float(curb) * (0.93f - 0.62f * away);
            addLine(city, x, y, x + 1, y, unit * 0.008f * (0.5f + away),
                    Vec3{1.0f, 0.66f, 0.30f} * (60 * (0.35f + away)));
        }
    for (int i = 0; i < 46; ++i) {
        const float x = float(width) * (0.5f + 0.24f * (random.next() + random.next() - 1)),
                    y = float(curb) * random.range(0.80f, 0.985f);
        const Vec3 light = i % 3 == 0   ? Vec3{1.0f, 0.10f, 0.06f}
                           : i % 3 == 1 ? Vec3{0.25f, 1.0f, 0.45f}
                                        : Vec3{1.0f, 0.75f, 0.45f};
        addLine(city, x, y, x + 0.5f, y, unit * 0.0035f, light * random.range(10, 70));
    }
    return city;
}

/// Neon on the houses to either side: cyan on the left, magenta on the right.
Raster<Vec3> neon(int width, int height, int curb, float unit) {
    Raster<Vec3> signs(width, height);
    const float w = float(width), h = float(curb), tube = unit * 0.007f;
    const Vec3 cyan{0.4f, 6.5f, 9.5f}, magenta{11.0f, 0.7f, 5.2f}, amber{9.0f, 3.4f, 0.4f};
    const auto box = [&](float left, float top, float right, float bottom, Vec3 light) {
        addLine(signs, w * left, h * top, w * right, h * top, tube, light);
        addLine(signs, w * right, h * top, w * right, h * bottom, tube, light);
        addLine(signs, w * right, h * bottom, w * left, h * bottom, tube, light);
        addLine(signs, w * left, h * bottom, w * left, h * top, tube, light);
    };
    box(0.115f, 0.26f, 0.165f, 0.62f, cyan);
    for (int i = 0; i < 4; ++i)
        addLine(signs, w * 0.128f, h * (0.32f + 0.08f * float(i)), w * 0.152f,
                h * (0.32f + 0.08f * float(i) + 0.02f * float(i % 2)), tube * 1.4f, cyan);
    box(0.845f, 0.22f, 0.895f, 0.58f, magenta);
    for (int i = 0; i < 5; ++i)
        addLine(signs, w * 0.858f, h * (0.28f + 0.06f * float(i)), w * 0.882f, h * (0.28f + 0.06f * float(i)),
                tube * 1.4f, magenta);
    box(0.235f, 0.64f, 0.335f, 0.71f, magenta * 0.8f);
    box(0.690f, 0.66f, 0.765f, 0.73f, cyan * 0.8f);
    for (int i = 0; i < 16; ++i) {
        const float a = 0.3927f * float(i), b = a + 0.3927f;
        addLine(signs, w * 0.045f + h * 0.075f * std::cos(a), h * (0.50f + 0.075f * std::sin(a)),
                w * 0.045f + h * 0.075f * std::cos(b), h * (0.50f + 0.075f * std::sin(b)), tube, amber);
    }
    addLine(signs, w * 0.93f, h * 0.74f, w * 0.99f, h * 0.74f, tube * 2, amber);
    return signs;
}

/// Sums down the columns make a tall blur cheap.
Raster<Vec3> blurredDown(const Raster<Vec3>& picture, int rows, int reach) {
    Raster<Vec3> sums(picture.width(), rows + 1), soft(picture.width(), rows);
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < picture.width(); ++x) sums.at(x, y + 1) = sums.at(x, y) + picture.at(x, y);
    for (int y = 0; y < rows; ++y) {
        const int from = std::max(0, y - reach), to = std::min(rows, y + reach + 1);
        for (int x = 0; x < picture.width(); ++x)
            soft.at(x, y) = (sums.at(x, to) - sums.at(x, from)) * (1 / float(to - from));
    }
    return soft;
}

}  // namespace

NightStreet::NightStreet(const StageView& view, float travel)
    : view_(view),
      margin_(int(travel * view.focal / kCityDistance) + 2),
      curb_(int(view.horizon + view.focal * view.cameraY / kCityDistance)),
      ground_(view.width, view.height - curb_) {
    const int width = view.width + 2 * margin_, blur = std::max(1, kBlur * view.height / 720);
    city_ = outOfFocus(houses(width, curb_, curb_, float(view.height)), blur);
    signs_ = outOfFocus(neon(width, curb_, curb_, float(view.height)), blur * 2 / 3);
    for (int y = 0; y < ground_.height(); ++y) {
        const float z = view.cameraY * view.focal / (float(curb_ + y) + 0.5f - view.horizon);
        // What is finer than a pixel is left out.
        const float fine = smoothstep(9, 4, z);
        for (int x = 0; x < ground_.width(); ++x) {
            const float wx = (float(x) - 0.5f * float(view.width)) / view.focal * z;
            const float puddles = fractalNoise(wx * 0.55f + 3.3f, z * 0.42f, 4, 81);
            const float grain = fractalNoise(wx * 38, z * 38, 2, 82), stones = noise(wx * 120, z * 120, 83);
            const NoiseSample ripple = noiseWithSlope(wx * 3.1f, z * 2.2f, 84);
            ground_.at(x, y) = {smoothstep(0.43f, 0.60f, puddles),
                                mix(0.5f, 0.55f * grain + 0.45f * stones, fine), ripple.dx};
        }
    }
}

void NightStreet::addTraffic(const StageView& view, double seconds, Raster<Vec3>& picture) const {
    const float unit = float(view.height) / 720;
    const auto disc = [&](float cx, float cy, float radius, Vec3 light) {
        for (int y = std::max(0, int(cy - radius - 1)); y <= std::min(curb_ - 1, int(cy + radius + 1)); ++y)
            for (int x = std::max(0, int(cx - radius - 1));
                 x <= std::min(view.width - 1, int(cx + radius + 1)); ++x) {
                const float d = std::hypot(float(x) + 0.5f - cx, float(y) + 0.5f - cy);
                const float rim = 0.75f + 0.45f * smoothstep(0.6f, 0.95f, d / radius);
                picture.at(x, y) += light * (clamp01(radius - d) * rim);
            }
    };
    for (int car = 0; car < 6; ++car) {
        const bool coming = car % 2 == 0;
        const float speed = (coming ? -1.0f : 1.0f) * (0.10f + 0.025f * hash01(std::uint32_t(car) + 91));
        // Along the street: 0 far away, 1 beside the camera.
        float along = hash01(std::uint32_t(car) + 97) - speed * float(seconds);
        along -= std::floor(along);
        const float near = along * along;
        const float x = 0.5f * float(view.width) +
                        (coming ? -1.0f : 1.0f) * (0.035f + 0.60f * near) * float(view.width) -
                        view.focal * view.cameraX / kCityDistance;
        const float y = float(curb_) * (0.955f - 0.035f * near), apart = (7 + 50 * near) * unit,
                    size = (5 + 11 * near) * unit;
        const float fade = smoothstep(0, 0.08f, along) * smoothstep(1, 0.9f, along);
        const Vec3 light = (coming ? Vec3{1.10f, 1.02f, 0.85f} : Vec3{1.30f, 0.05f, 0.035f}) *
                           ((0.5f + 0.4f * (1 - near)) * fade);
        disc(x - apart * 0.5f, y, size, light);
        disc(x + apart * 0.5f, y, size, light);
    }
    // Lamps of the houses twinkle in the warm air.
    for (int i = 0; i < 14; ++i) {
        const std::uint32_t seed = std::uint32_t(i) * 3 + 131;
        const float x = hash01(seed) * float(view.width) - view.focal * view.cameraX / kCityDistance,
                    y = float(curb_) * (0.25f + 0.6f * hash01(seed + 1));
        const float level =
            0.6f + 0.4f * std::sin(float(seconds) * 6.28318f * float(1 + i % 3) / 3 + float(i));
        disc(x, y, (7 + 7 * hash01(seed + 2)) * unit, kLampColors[std::size_t(i) % 4] * (0.11f * level));
    }
}

void NightStreet::drawGround(const StageView& view, const Raster<Painted>& figure, float standing,
                             float pulse, Raster<Vec3>& picture) const {
    const int reach = view.height / 24;
    const Raster<Vec3> soft = blurredDown(blurredDown(picture, curb_, reach), curb_, reach);
    const float feet = view.row({0, 0, 0.05f}), center = view.column({});
    for (int y = curb_; y < view.height; ++y) {
        const float down = float(y) + 0.5f - view.horizon, z = view.cameraY * view.focal / down;
        const float grazing = down / std::sqrt(down * down + view.focal * view.focal);
        const float fresnel = 0.05f + 0.95f * std::pow(1 - grazing, 5.0f);
        const Shift row(view.focal * view.cameraX / z);
        // Ripples in the puddles tear the mirror picture sideways, more the nearer they are.
        const int above = std::clamp(2 * curb_ - y, 0, curb_ - 1);
        for (int x = 0; x < view.width; ++x) {
            const Vec3 ground = row.of(ground_, x, y - curb_);
            const float wet = ground.x;
            const int shifted =
                std::clamp(x + int((2 + 18 * (1 - wet)) * ground.z * grazing * 4), 0, view.width - 1);
            const Vec3 mirror = mix(soft.at(shifted, above), picture.at(shifted, above), 0.55f * wet);
            const float dx = (float(x) - center) / view.focal * z, dz = z - view.distance;
            const float pool = std::exp(-0.55f * dx * dx - 0.5f * dz * dz);
            Vec3 light = Vec3{0.020f, 0.022f, 0.036f} + Vec3{0.34f, 0.27f, 0.21f} * pool;
            light += Vec3{0.02f, 0.16f, 0.24f} *
                     (pulse * std::exp(-0.5f * (dx + 2.2f) * (dx + 2.2f) - 0.25f * dz * dz));
            light += Vec3{0.26f, 0.02f, 0.14f} *
                     (pulse * std::exp(-0.5f * (dx - 2.2f) * (dx - 2.2f) - 0.25f * dz * dz));
            // The figure keeps light from the ground below it.
            const float shadow = 0.72f * std::exp(-std::pow((dx - standing - 0.10f) / 0.34f, 2.0f) -
                                                  std::pow(dz / 0.30f, 2.0f));
            Vec3 color = light * (1 - shadow) * (0.14f + 0.30f * ground.y) * (1 - 0.55f * wet) +
                         mirror * (fresnel * (0.45f + 1.6f * wet) + 0.05f);
            const int source = int(2 * feet - float(y));
            if (y >= int(feet) - 12 && source >= 0 && source < figure.height()) {
                const int across = std::clamp(x + int(3.5f * ground.z), 0, figure.width() - 1);
                const Painted& p = figure.at(across, source);
                const float strength =
                    (0.10f + 0.34f * wet) * smoothstep(feet + 0.30f * float(view.height), feet, float(y));
                color = color * (1 - p.alpha * strength) + p.color * strength;
            }
            picture.at(x, y) = color;
        }
    }
}

Raster<Vec3> NightStreet::draw(const StageView& view, double seconds, float pulse,
                               const Raster<Painted>& figure, float standing) const {
    Raster<Vec3> picture(view.width, view.height);
    const Shift far(float(margin_) + view.focal * view.cameraX / kCityDistance);
    for (int y = 0; y < curb_; ++y)
        for (int x = 0; x < view.width; ++x)
            picture.at(x, y) = far.of(city_, x, y) + far.of(signs_, x, y) * (0.55f + 0.6f * pulse);
    addTraffic(view, seconds, picture);
    drawGround(view, figure, standing, pulse, picture);
    for (int y = 0; y < view.height; ++y)
        for (int x = 0; x < view.width; ++x) {
            const Painted& p = figure.at(x, y);
            const float u = (float(x) / float(view.width) - 0.5f) * 1.5f,
                        v = (float(y) / float(view.height) - 0.5f) * 1.1f;
            picture.at(x, y) =
                (picture.at(x, y) * (1 - p.alpha) + p.color) * (1.04f - 0.45f * (u * u + v * v));
        }
    return picture;
}

}  // namespace qv::assets
