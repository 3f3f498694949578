// Draws the colour look-up tables: 512x512 pixels, 8x8 tiles of 64x64. A tile is one level of blue, row by
// row from the top left; in it red grows to the right and green downwards.

#include <cmath>
#include <string>

#include <fmt/format.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterExtension/Resources/Assets/Lookups/FilmStock.h"

using namespace qv;
using namespace qv::assets;

namespace {

constexpr int kLevels = 64, kTiles = 8, kSide = kTiles * kLevels;

float luma(Vec3 c) {
    return dot(c, {0.2126f, 0.7152f, 0.0722f});
}

/// Steeper in the middle by `amount` 0..1, black and white where they were.
float contrast(float v, float amount) {
    return mix(v, v * v * (3 - 2 * v), amount);
}

Vec3 identity(Vec3 c) {
    return c;
}

/// Warm lights, teal shadows, a gentle contrast.
Vec3 golden(Vec3 c) {
    Vec3 graded{contrast(c.x, 0.45f), contrast(c.y, 0.42f), contrast(c.z, 0.32f)};
    const float light = luma(graded);
    const float shadows = (1 - light) * (1 - light) * smoothstep(0.0f, 0.12f, light),
                lights = light * light * smoothstep(1.0f, 0.85f, light);
    graded += Vec3{-0.055f, 0.022f, 0.050f} * shadows + Vec3{0.060f, 0.022f, -0.085f} * lights;
    graded.z = graded.z * 0.94f + 0.018f;
    // Colours that are already strong gain less.
    const float gray = luma(graded);
    const float strength =
        std::max({std::abs(graded.x - gray), std::abs(graded.y - gray), std::abs(graded.z - gray)});
    return mix(Vec3{gray, gray, gray}, graded, 1.0f + 0.16f * (1 - clamp01(2.2f * strength)));
}

/// Rich black and white with cool shadows. Reds are lifted for skin, blues held back for skies.
Vec3 silver(Vec3 c) {
    const float mixed = 0.38f * c.x + 0.50f * c.y + 0.12f * c.z;
    const float light = contrast(contrast(mixed, 0.55f), 0.30f);
    const float tint = 4 * light * (1 - light);
    return Vec3{light, light, light} + Vec3{-0.014f, -0.002f, 0.020f} * tint;
}

/// Ash: hardly any colour left, the skies and lights of it cool, the embers warm; flat, with greyed blacks.
Vec3 ashen(Vec3 c) {
    const float light = luma(c);
    const float tone = 0.075f + 0.76f * contrast(light, 0.35f);
    const Vec3 faint =
        mix(Vec3{light, light, light}, c, 0.16f) + Vec3{tone - light, tone - light, tone - light};
    return faint + Vec3{-0.010f, -0.002f, 0.014f} * light + Vec3{0.010f, 0.002f, -0.004f} * (1 - light);
}

/// A winter's day: little colour but blues, lights that are almost white, shadows that stay deep and blue.
Vec3 frozen(Vec3 c) {
    const float light = luma(c), bright = contrast(std::pow(light, 0.86f), 0.35f);
    const Vec3 cold =
        mix(mix(Vec3{0.02f, 0.06f, 0.15f}, Vec3{0.36f, 0.60f, 0.80f}, smoothstep(0.0f, 0.55f, bright)),
            Vec3{0.95f, 0.985f, 1.0f}, smoothstep(0.3f, 1.0f, bright));
    const Vec3 own = (c + Vec3{-light, -light, -light}) * 0.35f;
    return cold + Vec3{own.x * 0.7f, own.y * 0.9f, own.z};
}

Bitmap table(Vec3 (*look)(Vec3)) {
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(kSide) * kSide * 4);
    const auto code = [](float v) { return std::uint8_t(std::lround(255 * clamp01(v))); };
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            const int blue = y / kLevels * kTiles + x / kLevels;
            const float scale = 1.0f / (kLevels - 1);
            const Vec3 c =
                look({float(x % kLevels) * scale, float(y % kLevels) * scale, float(blue) * scale});
            std::uint8_t* rgba = pixels->data() + (std::size_t(y) * kSide + std::size_t(x)) * 4;
            rgba[0] = code(c.x);
            rgba[1] = code(c.y);
            rgba[2] = code(c.z);
            rgba[3] = 255;
        }
    return {kSide, kSide, pixels};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_Lookups DIRECTORY\n");
        return 1;
    }
    const struct {
        const char* name;
        Vec3 (*look)(Vec3);
    } looks[] = {{"lookup_identity", identity},
                 {"lookup_golden", golden},
                 {"lookup_silver", silver},
                 {"celebrate_ashen_lookup", ashen},
                 {"black_film_dark", darkSilver},
                 {"light_film_light", warmHomeMovie},
                 {"fuji_film_lookup", portraitNegative},
                 {"noisy_film_lookup", pushedNegative},
                 {"damage_film_lookup", fadedPrint},
                 {"rec_film_lookup", camcorder},
                 {"vhs_film_lookup", cassette},
                 {"celebrate_freeze_lookup", frozen}};
    for (const auto& [name, look] : looks) {
        const std::string path = fmt::format("{}/{}.png", argv[1], name);
        std::string error;
        if (!writePNG(table(look), path, &error)) {
            fmt::print(stderr, "draw_Lookups: {}: {}\n", path, error);
            return 1;
        }
    }
}
