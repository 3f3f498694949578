// Draws the pictures of stray light on black that are screened over a frame.

#include <cmath>
#include <string>

#include <fmt/format.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterExtension/Resources/Assets/LightLeaks/FilmLeaks.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

using namespace qv;
using namespace qv::assets;

namespace {

constexpr int kWidth = 1280, kHeight = 720;
constexpr float kAspect = float(kWidth) / kHeight;
constexpr Vec3 kEmber{0.95f, 0.10f, 0.03f}, kAmber{1.0f, 0.42f, 0.07f}, kGold{1.0f, 0.72f, 0.30f},
    kRose{0.80f, 0.12f, 0.26f};

/// A soft band of light across the frame, brightest in one place and torn into finer streaks along its way.
struct Streak {
    float x, y;    ///< brightest place, heights
    float slope;   ///< rise over run
    float width;   ///< half its width, heights
    float length;  ///< half its length, heights
    float strength;
    Vec3 color;
};
constexpr Streak kStreaks[] = {
    {1.55f, 0.30f, -0.55f, 0.200f, 1.10f, 0.85f, kEmber},
    {1.30f, 0.52f, -0.50f, 0.085f, 0.85f, 0.80f, kAmber},
    {1.10f, 0.60f, -0.46f, 0.026f, 0.62f, 0.75f, kGold},
    {0.40f, 0.72f, -0.62f, 0.130f, 0.70f, 0.40f, kRose},
    {0.55f, 0.80f, -0.52f, 0.034f, 0.50f, 0.42f, kAmber},
    {0.95f, 0.16f, -0.40f, 0.050f, 0.60f, 0.28f, kEmber},
};

Vec3 streakAt(const Streak& streak, float x, float y, std::uint32_t seed) {
    const float norm = 1 / std::sqrt(1 + streak.slope * streak.slope);
    const float dx = x - streak.x, dy = y - streak.y;
    const float along = (dx + streak.slope * dy) * norm, across = (dy - streak.slope * dx) * norm;
    const float bend = across + 0.05f * (noise(along * 1.4f, 0.5f, seed) - 0.5f);
    const float profile = std::exp(-bend * bend / (streak.width * streak.width));
    const float ends = std::exp(-along * along / (streak.length * streak.length));
    const float threads = 0.65f + 0.7f * noise(along * 0.9f, across * 9 / std::sqrt(streak.width), seed + 1);
    return streak.color * (streak.strength * profile * ends * threads);
}

/// A reflection in the lens: a disc, a little brighter along its rim.
struct Ghost {
    float x, y, radius, strength;
    Vec3 color;
};
constexpr Ghost kGhosts[] = {{0.98f, 0.55f, 0.115f, 0.08f, kAmber},
                             {0.70f, 0.66f, 0.060f, 0.09f, kGold},
                             {0.47f, 0.76f, 0.150f, 0.07f, kRose},
                             {0.24f, 0.85f, 0.040f, 0.10f, kAmber}};

Vec3 ghostAt(const Ghost& ghost, float x, float y) {
    const float distance = std::hypot(x - ghost.x, y - ghost.y) / ghost.radius;
    const float rim = std::exp(-(distance - 0.86f) * (distance - 0.86f) / 0.03f);
    return ghost.color * (ghost.strength * (smoothstep(1.15f, 0.75f, distance) + 0.35f * rim));
}

/// Light through a gap in the camera's back: fierce at the right border, through amber to red inwards.
Vec3 edgeLeak(float x, float y) {
    const float wander = 0.16f * (fractalNoise(1.3f, y * 2.1f, 3, 7) - 0.5f);
    const float depth = kAspect - x + wander;
    const float along = std::exp(-(y - 0.34f) * (y - 0.34f) / 0.12f);
    const float veil = 0.75f + 0.5f * fractalNoise(x * 1.8f, y * 1.8f, 3, 9);
    return (kGold * std::exp(-depth / 0.09f) + kAmber * (0.8f * std::exp(-depth / 0.24f)) +
            kEmber * (0.75f * std::exp(-depth / 0.52f))) *
           (along * veil);
}

/// The lamp behind it all, with the line that an anamorphic lens draws through it.
Vec3 lampAt(float x, float y) {
    const float dx = x - 1.36f, dy = y - 0.40f, r = std::hypot(dx, dy);
    const float line = std::exp(-std::abs(dy) / 0.008f - std::abs(dx) / 0.42f);
    return kGold * (1.3f * std::exp(-r / 0.045f) + 0.5f * std::exp(-r / 0.20f)) +
           mix(kAmber, kGold, 0.5f) * (0.35f * line);
}

Bitmap lightWarp() {
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(kWidth) * kHeight * 4);
    parallelFor(kHeight, [&](int py) {
        std::uint8_t* out = pixels->data() + std::size_t(py) * kWidth * 4;
        for (int px = 0; px < kWidth; ++px, out += 4) {
            const float x = (float(px) + 0.5f) / kHeight, y = (float(py) + 0.5f) / kHeight;
            Vec3 light = edgeLeak(x, y) + lampAt(x, y);
            std::uint32_t seed = 100;
            for (const Streak& streak : kStreaks) light += streakAt(streak, x, y, seed += 10);
            for (const Ghost& ghost : kGhosts) light += ghostAt(ghost, x, y);
            // Film takes strong light up ever more slowly; all the colours that it holds drift towards white.
            const float lights[3] = {light.x, light.y, light.z};
            const float grain = 1.6f * (hash01(px, py, 5) - 0.5f);
            for (int c = 0; c < 3; ++c) {
                const float code = 255 * (1 - std::exp(-1.5f * lights[c]));
                out[c] =
                    std::uint8_t(std::clamp(code + grain * std::min(1.0f, code / 6) + 0.5f, 0.0f, 255.0f));
            }
            out[3] = 255;
        }
    });
    return {kWidth, kHeight, std::move(pixels)};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_LightLeaks DIRECTORY\n");
        return 1;
    }
    const auto write = [&](const Bitmap& picture, const std::string& name, int quality) {
        std::string error;
        if (writeJPEG(picture, fmt::format("{}/{}.jpg", argv[1], name), quality, &error)) return true;
        fmt::print(stderr, "draw_LightLeaks: {}\n", error);
        return false;
    };
    if (!write(lightWarp(), "light_warp2", 95)) return 1;
    for (int i = 0; i < kFilmLeaks; ++i) {
        const std::string name = i < kRedFilmLeaks ? fmt::format("light_film_leak_r_{}", i)
                                                   : fmt::format("light_film_leak_b_{}", i - kRedFilmLeaks);
        if (!write(filmLeak(i), name, 92)) return 1;
    }
}
