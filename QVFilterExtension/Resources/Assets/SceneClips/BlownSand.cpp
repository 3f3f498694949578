#include <cmath>
#include <memory>

#include "QVFilterExtension/Resources/Assets/SceneClips/SceneClips.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Raster.h"
#include "QVFilterExtension/Resources/Assets/Support/Tone.h"

namespace qv::assets {

namespace {

constexpr int kFrames = 75;
constexpr float kTurn = 6.2831853f;

/// A place on the ground; the camera looks down at it from the south.
struct Ground {
    float x, y;
};

Ground groundAt(float column, float row) {
    const float near = 0.34f + 0.66f * row / float(kSceneHeight);
    return {(column - 0.5f * float(kSceneWidth)) / (float(kSceneWidth) * near), 1.15f / near};
}

/// Height of the dunes: long backs to windward, in the west, steep faces to leeward, and crests that wander.
float duneHeight(Ground g) {
    const float wander =
        0.44f * noise(1.15f * g.x + 11, 0.95f * g.y + 5, 7) + 0.07f * noise(3.1f * g.x, 2.6f * g.y + 2, 8);
    const float along = 1.45f * g.x + 0.9f * g.y + 1.35f * wander;
    const float at = along - std::floor(along);
    // Sand rests at one angle on the lee side, whose foot runs out; the crest is a sharp edge.
    const float back = at / 0.7f, face = (1 - at) / 0.3f;
    const float profile = at < 0.7f ? back * back * (2.1f - 1.1f * back) : face * std::sqrt(face);
    return 0.19f * profile * (0.75f + 0.4f * noise(0.5f * g.x + 3, 0.6f * g.y, 21));
}

/// Ripples that the wind leaves on the backs, across it; deviations of the slope along x and y.
void addRipples(Ground g, float backness, float& slopeX, float& slopeY) {
    const float bend = fractalNoise(5 * g.x, 5 * g.y, 3, 40);
    const float phase = kTurn * (31 * g.x + 7 * g.y + 3.2f * bend);
    // Finer than two pixels they would only flicker.
    const float seen = smoothstep(2.7f, 1.5f, g.y) * (0.25f + 0.75f * backness);
    const float slope = 0.20f * seen * std::sin(phase) * (0.6f + 0.8f * noise(9 * g.x, 9 * g.y, 44));
    slopeX += slope;
    slopeY += 0.25f * slope;
}

Vec3 sunlitSand(float column, float row, float& crest) {
    const Ground g = groundAt(column, row);
    constexpr float kStep = 0.004f;
    const float height = duneHeight(g);
    float slopeX = (duneHeight({g.x + kStep, g.y}) - duneHeight({g.x - kStep, g.y})) / (2 * kStep);
    float slopeY = (duneHeight({g.x, g.y + kStep}) - duneHeight({g.x, g.y - kStep})) / (2 * kStep);
    const float backness = smoothstep(-0.15f, 0.12f, slopeX);
    crest = smoothstep(0.09f, 0.2f, height);
    addRipples(g, backness, slopeX, slopeY);
    const Vec3 normal = normalize({-slopeX, -slopeY, 1});
    const float sun = std::max(dot(normal, normalize({-0.86f, -0.22f, 0.42f})), 0.0f);
    const float sky = 0.5f + 0.5f * normal.z;
    const Vec3 light =
        Vec3{2.0f, 1.55f, 1.08f} * sun + Vec3{0.30f, 0.29f, 0.37f} * sky + Vec3{0.20f, 0.13f, 0.08f};
    // Coarse and fine grains of more than one stone.
    const float grains = 0.9f + 0.2f * hash01(int(column * 2), int(row * 2), 3);
    const float patches = fractalNoise(4 * g.x + 2, 4 * g.y, 3, 60);
    const Vec3 sand = mix(Vec3{0.56f, 0.31f, 0.165f}, Vec3{0.66f, 0.42f, 0.25f}, patches);
    return sand * light * grains;
}

/// Noise that repeats after `period` cells across.
float tiledNoise(float x, float y, int period, std::uint32_t seed) {
    const int ix = floorToInt(x), iy = floorToInt(y);
    const float u = x - float(ix), v = y - float(iy);
    const auto at = [&](int column, int row) {
        return hash01((column % period + period) % period, row, seed);
    };
    const float su = u * u * (3 - 2 * u), sv = v * v * (3 - 2 * v);
    return mix(mix(at(ix, iy), at(ix + 1, iy), su), mix(at(ix, iy + 1), at(ix + 1, iy + 1), su), sv);
}

/// Streaks of flying sand, 0..1, as wide as the frame and seamless across.
Raster<float> streaks(int cells, float rowsOfCell, std::uint32_t seed) {
    Raster<float> field(kSceneWidth, kSceneHeight);
    parallelFor(kSceneHeight, [&](int y) {
        for (int x = 0; x < kSceneWidth; ++x) {
            const float across = float(x) * float(cells) / kSceneWidth;
            // The streaks meander, in whole runs across the frame.
            const float bend = 9 * std::sin(kTurn * float(x) / kSceneWidth + float(y) * 0.011f) +
                               5 * std::sin(kTurn * 3 * float(x) / kSceneWidth + float(y) * 0.021f);
            const float row = (float(y) + bend) / rowsOfCell;
            const float coarse = tiledNoise(across, row, cells, seed);
            const float fine = tiledNoise(3 * across, 2.7f * row, 3 * cells, seed + 1);
            field.at(x, y) = smoothstep(0.52f, 0.92f, 0.68f * coarse + 0.32f * fine);
        }
    });
    return field;
}

struct Desert {
    Raster<Vec3> sand{kSceneWidth, kSceneHeight};
    Raster<float> crest{kSceneWidth, kSceneHeight};
    Raster<float> slow = streaks(9, 17, 100), fast = streaks(6, 31, 200), gusts = streaks(3, 150, 300);
    FilmTable film;

    Desert() {
        parallelFor(kSceneHeight, [&](int y) {
            for (int x = 0; x < kSceneWidth; ++x) {
                Vec3 sum;
                for (int i = 0; i < 4; ++i)
                    sum += sunlitSand(float(x) + 0.25f + 0.5f * float(i % 2),
                                      float(y) + 0.25f + 0.5f * float(i / 2), crest.at(x, y));
                sand.at(x, y) = sum * 0.25f;
            }
        });
    }

    SceneFrame frame(int index) const {
        SceneFrame rgba(std::size_t(kSceneWidth) * kSceneHeight * 4);
        const float run = float(index) / kFrames * kSceneWidth;
        const auto blown = [&](const Raster<float>& field, int x, int y, float columns) {
            float at = float(x) - columns;
            at -= kSceneWidth * std::floor(at / kSceneWidth);
            const int left = int(at) % kSceneWidth, right = (left + 1) % kSceneWidth;
            return mix(field.at(left, y), field.at(right, y), at - std::floor(at));
        };
        parallelFor(kSceneHeight, [&](int y) {
            for (int x = 0; x < kSceneWidth; ++x) {
                // The sand flies over the ground: it follows its rise, and leaves the crests as a veil.
                const float over = crest.at(x, y);
                const int row = std::clamp(y + int(26 * over), 0, kSceneHeight - 1);
                const float gust = 0.35f + 0.65f * blown(gusts, x, row, run);
                const float veil = gust *
                                   (0.7f * blown(slow, x, row, run) + 0.95f * blown(fast, x, row, 2 * run)) *
                                   (0.6f + 0.6f * over);
                const Vec3 light = mix(sand.at(x, y), Vec3{1.35f, 1.0f, 0.70f}, std::min(veil, 0.85f));
                develop(film, light * 0.62f, x, y, std::uint32_t(index), 1.2f,
                        &rgba[(std::size_t(y) * kSceneWidth + std::size_t(x)) * 4]);
            }
        });
        return rgba;
    }
};

}  // namespace

SceneClip blownSand() {
    return {kFrames, [desert = std::make_shared<const Desert>()](int index) { return desert->frame(index); }};
}

}  // namespace qv::assets
