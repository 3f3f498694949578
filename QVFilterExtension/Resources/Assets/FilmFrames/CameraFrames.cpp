#include <array>
#include <string>

#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/FilmFrames/EdgePrint.h"
#include "QVFilterExtension/Resources/Assets/FilmFrames/FilmFrames.h"

namespace qv::assets {

namespace {

constexpr int kWidth = 1920, kHeight = 1080;
constexpr int kLensSide = 1440;
constexpr float kLensMiddle = 720;
constexpr float kPi = 3.14159265f;
constexpr float kLine = 4, kThin = 2.6f;  // widths of the viewfinder's lines

/// A ring of the barrel, from `inside` to `outside` pixels from the middle.
struct Ring {
    float inside, outside, light;
};
constexpr std::array<Ring, 6> kRings{{{500, 520, 0.20f},
                                      {520, 556, 0.05f},
                                      {556, 566, 0.26f},
                                      {566, 690, 0.075f},
                                      {690, 704, 0.22f},
                                      {704, 1200, 0.045f}}};

/// What the barrel's black metal mirrors of a window above left and a fainter one below right.
float sheen(float angle, float sharpness) {
    const float first = 0.5f + 0.5f * std::cos(angle + 0.72f * kPi);
    const float second = 0.5f + 0.5f * std::cos(angle - 0.24f * kPi);
    return std::pow(first, sharpness) + 0.4f * std::pow(second, sharpness * 1.4f);
}

/// Words and marks engraved around the middle.
Raster<float> engraving() {
    Raster<float> layer(kLensSide, kLensSide);
    const auto around = [&](std::string_view text, float degrees, float radius, float unit) {
        const float start = degrees / 180 * kPi - 0.5f * printWidth(text) * unit / radius;
        printText(layer, text, 0.8f * unit, [=](float x, float y) {
            const float angle = start + x * unit / radius, r = radius - (y - 0.5f * kPrintHeight) * unit;
            return PrintPoint{kLensMiddle + r * std::cos(angle), kLensMiddle + r * std::sin(angle)};
        });
    };
    around("QV OPTICS", 180, 626, 5.5f);
    around("50 MM", 0, 626, 5.5f);
    around("1:2.0", 24, 626, 4.5f);
    around("NO 2407", 152, 626, 4.5f);
    for (int i = 0; i < 240; ++i) {
        const float angle = float(i) / 120 * kPi, length = i % 10 == 0 ? 16.0f : i % 5 == 0 ? 11.0f : 6.0f;
        const auto at = [&](float r) {
            return PrintPoint{kLensMiddle + r * std::cos(angle), kLensMiddle + r * std::sin(angle)};
        };
        printStroke(layer, at(536), at(536 - length), 1.6f);
    }
    return layer;
}

}  // namespace

Bitmap lensFrame() {
    const Raster<float> marks = engraving();
    return buildBitmap(kLensSide, kLensSide, [&](int px, int py) {
        const float dx = float(px) + 0.5f - kLensMiddle, dy = float(py) + 0.5f - kLensMiddle;
        const float r = std::hypot(dx, dy), angle = std::atan2(dy, dx);
        // The opening's edge is out of focus; inside it the light falls off and the glass shows its coating.
        const float barrel = smoothstep(482, 504, r);
        const float fall = 0.8f * std::pow(clamp01((r - 330) / 165), 2.2f);
        const auto fringe = [&](float at, float width) {
            const float d = (r - at) / width;
            return std::exp(-d * d);
        };
        const float lit = sheen(angle, 3);
        const Vec3 coating = Vec3{0.30f, 0.16f, 0.85f} * (fringe(470, 13) * (0.10f + 0.42f * lit)) +
                             Vec3{0.10f, 0.62f, 0.55f} * (fringe(446, 10) * (0.03f + 0.26f * lit)) +
                             Vec3{0.95f, 0.45f, 0.12f} * (fringe(486, 6) * (0.08f + 0.4f * lit));
        // Two arcs that the inner elements mirror.
        const float arcs = fringe(388, 26) * std::pow(sheen(angle + 0.12f, 9), 1.2f) * 0.16f +
                           fringe(300, 9) * std::pow(sheen(angle - 0.2f, 14), 1.2f) * 0.12f;
        const Vec3 glass = coating + Vec3{0.75f, 0.85f, 1.0f} * arcs;

        Vec3 metal;
        for (const Ring& ring : kRings) {
            const float inside = smoothstep(ring.inside - 1, ring.inside + 1, r) *
                                 smoothstep(ring.outside + 1, ring.outside - 1, r);
            const float bevel = 0.35f * std::exp(-std::max(r - ring.inside, 0.0f) / 2.5f);
            // Turned metal: fine grooves.
            const float grooves =
                0.85f + 0.15f * std::sin(r * 2.1f) + 0.1f * (hash01(int(r * 1.5f), 0, 5) - 0.5f);
            metal += Vec3{0.95f, 0.97f, 1.0f} *
                     (inside * grooves * ring.light * (0.55f + 1.6f * lit * (1 + bevel * 3)));
        }
        metal += Vec3{1, 1, 1} * (0.012f * (hash01(px, py, 31) - 0.5f));
        metal = mix(metal, Vec3{0.86f, 0.85f, 0.80f}, marks.at(px, py) * (0.55f + 0.4f * lit));
        metal *= smoothstep(1250, 560, r);

        const float glow = std::max({glass.x, glass.y, glass.z});
        const float inner = clamp01(std::max(fall, glow));
        const float alpha = mix(inner, 1.0f, barrel);
        const Vec3 color = mix(glass, metal, barrel);
        return Rgba{{std::min(clamp01(color.x), alpha), std::min(clamp01(color.y), alpha),
                     std::min(clamp01(color.z), alpha)},
                    alpha};
    });
}

Bitmap viewfinderFrame() {
    Raster<float> white(kWidth, kHeight), red(kWidth, kHeight), green(kWidth, kHeight);
    const auto line = [&](float x0, float y0, float x1, float y1, float width = kLine) {
        printStroke(white, {x0, y0}, {x1, y1}, width);
    };
    // Four corners of a rectangle around the middle.
    const auto corners = [&](float halfWidth, float halfHeight, float arm, float width) {
        for (const float h : {-1.0f, 1.0f})
            for (const float v : {-1.0f, 1.0f}) {
                const float x = 960 + h * halfWidth, y = 540 + v * halfHeight;
                line(x, y, x - h * arm, y, width);
                line(x, y, x, y - v * arm, width);
            }
    };
    corners(872, 452, 110, kLine);
    corners(210, 140, 46, kThin);
    line(932, 540, 988, 540, kThin);
    line(960, 512, 960, 568, kThin);
    // Marks of the thirds on the outer rectangle.
    for (const float third : {-1.0f, 1.0f}) {
        for (const float v : {-1.0f, 1.0f})
            line(960 + third * 291, 540 + v * 452, 960 + third * 291, 540 + v * 436, kThin);
        for (const float h : {-1.0f, 1.0f})
            line(960 + h * 872, 540 + third * 151, 960 + h * 856, 540 + third * 151, kThin);
    }

    printStroke(red, {146, 152}, {146, 152}, 30);
    printLine(white, "REC", 180, 137, 5);
    printLine(white, "00:24:07:12", 960 - 0.5f * 5 * printWidth("00:24:07:12"), 137, 5);
    // The battery, three quarters full.
    for (const auto& [x0, y0, x1, y1] : {std::array{1690.f, 134.f, 1768.f, 134.f},
                                         {1768.f, 134.f, 1768.f, 170.f},
                                         {1768.f, 170.f, 1690.f, 170.f},
                                         {1690.f, 170.f, 1690.f, 134.f},
                                         {1776.f, 146.f, 1776.f, 158.f}})
        line(x0, y0, x1, y1, kThin);
    for (int i = 0; i < 3; ++i)
        printStroke(green, {1704 + 19 * float(i), 145}, {1704 + 19 * float(i), 159}, 12);

    printLine(white, "1/50", 140, 908, 5);
    printLine(white, "F2.8", 320, 908, 5);
    printLine(white, "ISO 400", 1780 - 5 * printWidth("ISO 400"), 908, 5);
    printLine(white, "4K 25", 1780 - 4 * printWidth("4K 25"), 208, 4);
    // The exposure scale in thirds of a stop, and where the needle stands.
    for (int i = -9; i <= 9; ++i) {
        const float x = 960 + 24 * float(i), length = i % 3 == 0 ? 24.0f : 12.0f;
        line(x, 940 - length, x, 940, kThin);
    }
    line(936, 952, 932, 964, kLine);
    line(936, 952, 940, 964, kLine);
    printLine(white, "-", 720, 922, 4);
    line(1188, 936, 1204, 936, 3.4f);
    line(1196, 928, 1196, 944, 3.4f);

    Raster<float> all(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            all.at(x, y) = std::max({white.at(x, y), red.at(x, y), green.at(x, y)});
    const Raster<float> shadow = blurred(all, 4), glow = blurred(red, 9);
    return buildBitmap(kWidth, kHeight, [&](int x, int y) {
        // The finder's own glass darkens towards its corners.
        const float dx = (float(x) + 0.5f) / 960 - 1, dy = (float(y) + 0.5f) / 540 - 1;
        const float vignette = 0.34f * std::pow(clamp01((dx * dx + dy * dy) * 0.5f), 2.2f);
        const float behind = std::max(vignette, clamp01(0.75f * shadow.at(x, y)));
        const float ink = 0.93f * all.at(x, y), bleed = clamp01(0.5f * glow.at(x, y)) * (1 - ink);
        const Vec3 tint = red.at(x, y) > white.at(x, y)     ? Vec3{0.95f, 0.13f, 0.10f}
                          : green.at(x, y) > white.at(x, y) ? Vec3{0.45f, 0.86f, 0.42f}
                                                            : Vec3{0.97f, 0.975f, 0.965f};
        const float alpha = std::max(ink + behind * (1 - ink), bleed);
        return Rgba{tint * ink + Vec3{0.9f, 0.1f, 0.06f} * bleed, alpha};
    });
}

}  // namespace qv::assets
