#include "QVFilterExtension/Resources/Assets/TornPapers/Stationery.h"

#include <cmath>

#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/FilmFrames/EdgePrint.h"

namespace qv::assets {

namespace {

constexpr float kPi = 3.14159265f;
constexpr Vec3 kShadow{0.045f, 0.035f, 0.03f};

/// `alpha` of `color` above a shadow.
Rgba overShadow(Vec3 color, float alpha, float shadow) {
    return {color * alpha + kShadow * (shadow * (1 - alpha)), alpha + shadow * (1 - alpha)};
}

}  // namespace

Bitmap tape() {
    constexpr int kWidth = 420, kHeight = 120;
    return buildBitmap(kWidth, kHeight, [](int px, int py) {
        const float x = float(px) + 0.5f, y = float(py) + 0.5f;
        // Teeth of the dispenser at both ends.
        const float tooth = std::abs(y / 13 - std::floor(y / 13) - 0.5f) * 13;
        const float ends = std::min(x - 12 - tooth, float(kWidth) - 12 - tooth - x);
        const float sides = std::min(y - 12, float(kHeight) - 14 - y);
        const float inside = clamp01(std::min(ends, sides) + 0.5f);
        const float crease = fractalNoise(x * 0.012f, y * 0.05f, 3, 71) - 0.5f;
        const float fibre = fractalNoise(x * 0.3f, y * 0.06f, 2, 72) - 0.5f;
        const float stripe = smoothstep(0.42f, 0.5f, std::abs(y / 24 - std::floor(y / 24) - 0.5f));
        const Vec3 color = mix(Vec3{0.90f, 0.72f, 0.42f}, Vec3{0.97f, 0.86f, 0.64f}, stripe) *
                           (1 + 0.18f * crease + 0.12f * fibre);
        const float shade = 0.22f * clamp01((std::min(ends, sides) + 9) / 14);
        return overShadow(color, inside * (0.86f + 0.1f * fibre), shade * (1 - inside));
    });
}

Bitmap stampFraming(int windowWidth, int windowHeight, int margin) {
    constexpr float kBorder = 62, kPitch = 44, kHole = 14;
    const int width = windowWidth + 2 * margin, height = windowHeight + 2 * margin;
    const float halfWidth = float(windowWidth) / 2, halfHeight = float(windowHeight) / 2;
    // Inside the stamp 1, outside 0. Holes lie along the sides, and at the corners.
    const auto coverage = [&](float x, float y) {
        const float ax = std::abs(x), ay = std::abs(y);
        const float w = halfWidth + kBorder, h = halfHeight + kBorder;
        float inside = std::min(w - ax, h - ay);
        const auto toHole = [&](float along, float side) {
            const float count = std::round(2 * side / kPitch), pitch = 2 * side / count;
            const float from = (along + side) / pitch;
            return (from - std::round(from)) * pitch;
        };
        inside = std::min(inside, std::hypot(toHole(x, w), ay - h) - kHole);
        inside = std::min(inside, std::hypot(toHole(y, h), ax - w) - kHole);
        return clamp01(inside + 0.5f);
    };
    Raster<float> paper(width, height), print(width, height);
    parallelFor(height, [&](int y) {
        for (int x = 0; x < width; ++x)
            paper.at(x, y) =
                coverage(float(x) + 0.5f - float(width) / 2, float(y) + 0.5f - float(height) / 2);
    });
    printLine(print, "45", float(width - margin) - 12 * 11 - 6, float(margin) + 26, 11);
    printLine(print, "QV POST", float(margin) + 26, float(height - margin) - 26 - 6 * 7, 7);
    const Raster<float> soft = blurred(paper, 15), printShade = blurred(print, 5);
    return buildBitmap(width, height, [&](int px, int py) {
        const float x = float(px) + 0.5f - float(width) / 2, y = float(py) + 0.5f - float(height) / 2;
        const float outside = std::max(std::abs(x) - halfWidth, std::abs(y) - halfHeight);
        const float shadow = 0.5f * soft.clamped(px + 7, py - 13);
        if (outside < 0) {
            // The print lies on the picture.
            const float ink = print.at(px, py);
            return Rgba{Vec3{1, 0.99f, 0.96f} * ink, std::max(ink, 0.5f * printShade.at(px, py))};
        }
        const float cloud = fractalNoise(float(px) * 0.02f, float(py) * 0.02f, 4, 61) - 0.5f;
        const float grain = hash01(px, py, 62) - 0.5f;
        const Vec3 color = Vec3{0.965f, 0.955f, 0.925f} * (1 + 0.05f * cloud + 0.025f * grain);
        const float line = 1 - 0.25f * clamp01(1.2f - std::abs(outside - 1));
        return overShadow(color * line, paper.at(px, py), shadow);
    });
}

Bitmap postmark() {
    constexpr int kWidth = 760, kHeight = 380;
    constexpr float kMiddleX = 190, kMiddleY = 190;
    Raster<float> ink(kWidth, kHeight);
    const auto circle = [&](float radius, float width) {
        for (int i = 0; i < 120; ++i) {
            const auto at = [&](int k) {
                const float angle = float(k) / 60 * kPi;
                return PrintPoint{kMiddleX + radius * std::cos(angle), kMiddleY + radius * std::sin(angle)};
            };
            printStroke(ink, at(i), at(i + 1), width);
        }
    };
    circle(162, 8);
    circle(104, 4);
    const auto around = [&](std::string_view text, float middle, float unit, float radius) {
        const float start = middle - 0.5f * printWidth(text) * unit / radius;
        printText(ink, text, 1.0f * unit, [=](float x, float y) {
            const float angle = start + x * unit / radius, r = radius - (y - 0.5f * kPrintHeight) * unit;
            return PrintPoint{kMiddleX + r * std::cos(angle), kMiddleY + r * std::sin(angle)};
        });
    };
    around("QV MAIN OFFICE", -0.5f * kPi, 5.2f, 133);
    around("AIR MAIL", 0.5f * kPi, 5.2f, 133);
    for (const auto& [text, y] : {std::pair{"24 07", 144.0f}, {"11 45", 200.0f}})
        printLine(ink, text, kMiddleX - 0.5f * 5.4f * printWidth(text), y, 5.4f);
    for (int row = 0; row < 5; ++row) {
        const auto at = [&](int k) {
            const float x = 352 + 8 * float(k);
            return PrintPoint{x, 78 + 56 * float(row) + 13 * std::sin(x * 0.052f)};
        };
        for (int k = 0; k < 48; ++k) printStroke(ink, at(k), at(k + 1), 9);
    }
    return buildBitmap(kWidth, kHeight, [&](int x, int y) {
        // Unevenly inked and pressed.
        const float press = fractalNoise(float(x) * 0.012f, float(y) * 0.012f, 3, 81);
        const float spots = noise(float(x) * 0.35f, float(y) * 0.35f, 82);
        const float alpha = ink.at(x, y) * clamp01(0.35f + 1.1f * press - 0.35f * spots) * 0.92f;
        return Rgba{Vec3{0.10f, 0.11f, 0.24f} * alpha, alpha};
    });
}

Bitmap page(int side, Vec3 color, std::uint32_t seed) {
    return buildBitmap(side, side, [=](int px, int py) {
        const float x = float(px), y = float(py);
        const float cloud = fractalNoise(x * 0.006f, y * 0.006f, 4, seed) - 0.5f;
        const float fibre = fractalNoise(x * 0.35f, y * 0.09f, 2, seed + 1) - 0.5f;
        const float across = fractalNoise(x * 0.07f, y * 0.4f, 2, seed + 2) - 0.5f;
        const float grain = hash01(px, py, seed + 3) - 0.5f;
        const float light = 1 + 0.14f * cloud + 0.12f * fibre + 0.08f * across + 0.05f * grain;
        const Vec3 lit = color * light;
        return Rgba{{clamp01(lit.x), clamp01(lit.y), clamp01(lit.z)}, 1};
    });
}

}  // namespace qv::assets
