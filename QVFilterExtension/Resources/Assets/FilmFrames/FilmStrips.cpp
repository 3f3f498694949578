#include <initializer_list>
#include <vector>

#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/FilmFrames/EdgePrint.h"
#include "QVFilterExtension/Resources/Assets/FilmFrames/FilmFrames.h"

namespace qv::assets {

namespace {

constexpr int kWidth = 1920, kHeight = 1080;

/// A rectangle with rounded corners.
struct Window {
    float x, y, halfWidth, halfHeight, radius;  ///< of its middle; pixels

    /// Pixels to its outline, negative inside.
    float distance(float px, float py) const {
        const float dx = std::abs(px - x) - halfWidth + radius, dy = std::abs(py - y) - halfHeight + radius;
        const float outside = std::hypot(std::max(dx, 0.0f), std::max(dy, 0.0f));
        return outside + std::min(std::max(dx, dy), 0.0f) - radius;
    }
};

struct Strip {
    Window gate;
    std::vector<Window> perforations;
    bool runsDown = false;  ///< else from left to right
    Raster<float> print{kWidth, kHeight};
    std::uint32_t seed = 0;
};

/// Perforations of one size around the places given.
void punch(Strip& strip, std::initializer_list<float> across, float first, float pitch, Window shape) {
    const float end = strip.runsDown ? kHeight : kWidth;
    for (const float place : across)
        for (float along = first; along < end + pitch; along += pitch) {
            shape.x = strip.runsDown ? place : along;
            shape.y = strip.runsDown ? along : place;
            strip.perforations.push_back(shape);
        }
}

/// What use has left on the film. Dark things take light away; scratches in the base let it through.
struct Wear {
    Raster<float> dark{kWidth, kHeight}, light{kWidth, kHeight};
};

/// Scratches along the film, specks, and hairs that lie in curves.
Wear wearOf(const Strip& strip) {
    Wear wear;
    HashStream draw(strip.seed * 97 + 13);
    const float along = strip.runsDown ? kHeight : kWidth, across = strip.runsDown ? kWidth : kHeight;
    const auto at = [&](float s, float t) { return strip.runsDown ? PrintPoint{t, s} : PrintPoint{s, t}; };
    for (int i = 0; i < 46; ++i) {
        const float place = draw.next() * across, lean = draw.range(-2, 2);
        float s = draw.range(-0.3f, 0.7f) * along;
        const float end = s + draw.range(0.1f, 0.9f) * along;
        const float width = draw.range(0.25f, 0.9f);
        Raster<float>& layer = draw.next() < 0.75f ? wear.light : wear.dark;
        // Broken where the film did not touch what scratched it.
        while (s < end) {
            const float next = s + draw.range(20, 160);
            const float t = place + lean * (s / along), t2 = place + lean * (next / along);
            if (draw.next() < 0.7f) printStroke(layer, at(s, t), at(next, t2), width);
            s = next;
        }
    }
    for (int i = 0; i < 260; ++i) {
        const float x = draw.next() * kWidth, y = draw.next() * kHeight;
        const float size = 0.6f + 3.2f * std::pow(draw.next(), 4.0f), lean = draw.range(-1, 1) * size;
        printStroke(draw.next() < 0.6f ? wear.light : wear.dark, {x, y},
                    {x + lean, y + draw.range(-1, 1) * size}, size);
    }
    for (int i = 0; i < 7; ++i) {
        PrintPoint p{draw.next() * kWidth, draw.next() * kHeight};
        float heading = draw.range(0, 6.28f), bend = draw.range(-0.05f, 0.05f);
        const int steps = int(draw.range(14, 46));
        for (int k = 0; k < steps; ++k) {
            const PrintPoint next{p.x + 3.5f * std::cos(heading), p.y + 3.5f * std::sin(heading)};
            const float taper = 1 - std::abs(2 * float(k) / float(steps) - 1);
            printStroke(wear.dark, p, next, 0.7f + 1.1f * taper);
            heading += bend;
            bend += draw.range(-0.012f, 0.012f);
            p = next;
        }
    }
    return wear;
}

/// Developed film on a light table: dense base, holes with light behind them that bleeds red into the
/// emulsion, and edge print that glows.
Bitmap develop(const Strip& strip) {
    const Wear wear = wearOf(strip);
    const Raster<float> near = blurred(strip.print, 3), far = blurred(strip.print, 11);
    return buildBitmap(kWidth, kHeight, [&](int px, int py) {
        const float x = float(px) + 0.5f, y = float(py) + 0.5f;
        const float ragged = 1.3f * (fractalNoise(x * 0.05f, y * 0.05f, 3, strip.seed + 5) - 0.5f);
        const float gate = strip.gate.distance(x, y) + ragged;
        float hole = 1e9f, inner = 1e9f;
        for (const Window& each : strip.perforations) {
            if (std::abs(x - each.x) > each.halfWidth + 60 || std::abs(y - each.y) > each.halfHeight + 60)
                continue;
            hole = std::min(hole, each.distance(x, y));
            // The rim's thickness is seen on the side away from the light.
            inner = std::min(inner, each.distance(x + 2.2f, y + 2.2f));
        }

        // The base: nearly black, a little uneven, a sheen along the film.
        const float s = (strip.runsDown ? x : y) / float(kHeight);
        const float cloud = fractalNoise(x * 0.004f, y * 0.004f, 4, strip.seed + 11) - 0.5f;
        const float sheen = 0.5f + 0.5f * std::sin(9 * s + 2.4f * cloud);
        const float grain = hash01(px, py, strip.seed + 17) + hash01(px / 2, py / 2, strip.seed + 19) - 1;
        Vec3 color = Vec3{0.060f, 0.047f, 0.043f} * (0.75f + 0.35f * sheen + 0.5f * cloud);
        color += Vec3{1, 0.94f, 0.9f} * (0.014f * grain);

        const float glow = hole < 1e8f ? std::exp(-std::max(hole, 0.0f) / 13) : 0;
        color += Vec3{0.62f, 0.17f, 0.06f} * (0.55f * glow * glow) + Vec3{0.20f, 0.06f, 0.02f} * glow;
        const float ink = strip.print.at(px, py);
        color += Vec3{0.80f, 0.30f, 0.05f} * (0.35f * near.at(px, py)) +
                 Vec3{0.55f, 0.14f, 0.02f} * (0.55f * far.at(px, py));
        color = mix(color, Vec3{1.0f, 0.70f, 0.24f}, 0.92f * ink);
        // The picture's own light bleeds into the rim of the gate.
        const float rim = std::exp(-std::max(gate, 0.0f) / 7);
        color += Vec3{0.16f, 0.075f, 0.035f} * (rim * rim);

        const float scratch = wear.light.at(px, py), dirt = wear.dark.at(px, py);
        color = mix(color, Vec3{0.50f, 0.43f, 0.36f}, 0.42f * scratch);
        color = mix(color, Vec3{0.012f, 0.010f, 0.010f}, 0.7f * dirt);

        const float light = 0.97f - 0.05f * clamp01(fractalNoise(x * 0.01f, y * 0.01f, 2, strip.seed + 23));
        const Vec3 lamp = mix(Vec3{0.60f, 0.48f, 0.38f}, Vec3{1.0f, 0.975f, 0.925f} * light,
                              smoothstep(2.0f, -2.5f, inner));
        color = mix(color, lamp, smoothstep(0.9f, -0.9f, hole));

        // Into the gate reach a soft shade, dust and hairs.
        const float base = smoothstep(-1.1f, 1.1f, gate);
        const float shade = 0.42f * std::pow(clamp01(1 + gate / 26), 2.5f);
        const float litter = std::max(0.62f * dirt, 0.20f * scratch);
        const Vec3 inGate =
            scratch * 0.2f > dirt * 0.62f ? Vec3{0.8f, 0.76f, 0.7f} : Vec3{0.02f, 0.016f, 0.014f};
        const float alpha = mix(std::max(shade, litter), 1.0f, base);
        const Vec3 straight = mix(shade > litter ? Vec3{0.02f, 0.014f, 0.01f} : inGate, color, base);
        return Rgba{Vec3{clamp01(straight.x), clamp01(straight.y), clamp01(straight.z)} * alpha, alpha};
    });
}

}  // namespace

// Distances follow the standards for film: pitch 4.75 mm, perforations of 2.79 mm by 1.98 mm.

Bitmap stillFilmFrame() {
    Strip strip;
    strip.gate = {960, 540, 920, 372, 26};
    strip.seed = 6;
    punch(strip, {78, 1002}, 24, 144, {0, 0, 30, 42, 11});
    // Between two perforations, outside their row.
    printLine(strip.print, "24", 228, 8, 3.2f);
    printLine(strip.print, ">24A", 1090, 8, 3.2f);
    printLine(strip.print, "QV SAFETY FILM", 560, 1055, 2.8f);
    printLine(strip.print, "400", 1520, 1055, 2.8f);
    return develop(strip);
}

Bitmap printedFilmFrame() {
    Strip strip;
    strip.gate = {960, 540, 928, 338, 30};
    strip.seed = 2;
    punch(strip, {92, 988}, 96, 192, {0, 0, 37, 52, 14});
    // No word lies across the middle of a frame, or across the last two perforations' border: there the film
    // is cut for other shapes.
    printLine(strip.print, "QV COLOR 250", 24, 8, 4.0f);
    printLine(strip.print, "5024", 400, 8, 4.0f);
    printLine(strip.print, "SAFETY FILM", 600, 8, 4.0f);
    printLine(strip.print, "QV COLOR 250", 1390, 8, 4.0f);
    printLine(strip.print, "24", 330, 1050, 4.0f);
    printLine(strip.print, ">24A", 1050, 1050, 4.0f);
    printLine(strip.print, "25", 1770, 1050, 4.0f);
    // The film's code, and the words between perforations and picture.
    HashStream bars(77);
    for (float x = 500; x < 860;) {
        const float width = 5 + 5 * std::floor(bars.range(0, 3));
        printStroke(strip.print, {x, 1053}, {x, 1072}, width);
        x += width + 5 + 5 * std::floor(bars.range(0, 3));
    }
    for (int i = 0; i < 4; ++i) {
        printLine(strip.print, i % 2 ? "-> 25" : "QV MOTION", 200 + 480 * float(i), 164, 2.7f);
        printLine(strip.print, i % 2 ? "SAFETY" : "1 2 3 4", 40 + 480 * float(i), 900, 2.7f);
    }
    return develop(strip);
}

Bitmap cineFilmFrame() {
    Strip strip;
    strip.runsDown = true;
    strip.gate = {960, 540, 707, 526, 30};
    strip.seed = 1;
    punch(strip, {150, 1770}, 0, 270, {0, 0, 79, 56, 22});
    printLine(strip.print, "QV SAFETY FILM", 46, 160, 4.2f, 1);
    printLine(strip.print, "5024 250", 46, 830, 4.2f, 1);
    printLine(strip.print, "A1", 1890, 106, 4.2f, 1);
    printLine(strip.print, "0024-07", 1890, 560, 4.2f, 1);
    return develop(strip);
}

Bitmap homeFilmFrame() {
    Strip strip;
    strip.runsDown = true;
    strip.gate = {1015, 540, 735, 508, 74};
    strip.seed = 3;
    punch(strip, {132}, 0, 1080, {0, 0, 92, 132, 34});
    printLine(strip.print, "QV 8", 1874, 150, 5.0f, 1);
    printLine(strip.print, "24", 1874, 860, 5.0f, 1);
    return develop(strip);
}

}  // namespace qv::assets
