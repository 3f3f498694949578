#include <array>

#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/RetroPictures/RetroPictures.h"
#include "QVFilterExtension/Resources/Assets/Support/Stroke.h"

namespace qv::assets {

namespace {

/// A blob with a ragged outline: 1 inside, 0 outside, soft over `soft` of its radius.
struct Blob {
    float x, y, radius, stretch, turn, ragged, soft;
    std::uint32_t seed;

    float at(float px, float py) const {
        const float c = std::cos(turn), s = std::sin(turn);
        const float dx = c * (px - x) + s * (py - y), dy = (c * (py - y) - s * (px - x)) * stretch;
        const float r = std::sqrt(dx * dx + dy * dy) / radius;
        const float edge =
            1 + ragged * (fractalNoise(3 + 2.2f * dx / radius, 3 + 2.2f * dy / radius, 3, seed) - 0.5f);
        return smoothstep(edge + soft, edge - soft, r);
    }
};

/// Blobs from a stream: places about the middle of a square, sizes down to nothing.
template <std::size_t count>
std::array<Blob, count> blobs(std::uint32_t seed, float side, float spread, float smallest, float largest) {
    HashStream draw(seed);
    std::array<Blob, count> all;
    for (Blob& blob : all) {
        const float angle = draw.range(0, 6.2832f), away = spread * side * std::sqrt(draw.next());
        const float size = draw.next() * draw.next();
        blob = {.x = side / 2 + away * std::cos(angle),
                .y = side / 2 + away * std::sin(angle),
                .radius = mix(smallest, largest, size) * side,
                .stretch = draw.range(1, 2.4f),
                .turn = draw.range(0, 3.1416f),
                .ragged = draw.range(0.7f, 1.5f),
                .soft = draw.range(0.10f, 0.28f),
                .seed = seed * 31 + std::uint32_t(&blob - all.data())};
    }
    return all;
}

template <std::size_t count>
float strongest(const std::array<Blob, count>& all, float x, float y) {
    float most = 0;
    for (const Blob& blob : all) most = std::max(most, blob.at(x, y));
    return most;
}

/// A lint: a curved line of varying width.
void drawLint(Raster<float>& layer, HashStream& draw, float length, float width) {
    float x = draw.range(0.25f, 0.75f) * float(layer.width()),
          y = draw.range(0.25f, 0.75f) * float(layer.height());
    float angle = draw.range(0, 6.2832f), bend = draw.range(-0.10f, 0.10f);
    constexpr int kSteps = 22;
    for (int i = 0; i < kSteps; ++i) {
        const float nx = x + std::cos(angle) * length / kSteps, ny = y + std::sin(angle) * length / kSteps;
        const float thickness = width * std::sin(3.1416f * (float(i) + 0.5f) / kSteps);
        stroke(layer, x, y, nx, ny, thickness, thickness,
               [](float& pixel, float coverage) { pixel = std::max(pixel, coverage); });
        bend += draw.range(-0.03f, 0.03f);
        angle += bend;
        x = nx, y = ny;
    }
}

}  // namespace

Bitmap whitePoint(int index) {
    constexpr int kSide = 96;
    const auto seed = std::uint32_t(100 + 17 * index);
    const auto specks = blobs<4>(seed, kSide, 0.28f, 0.02f, 0.13f);
    return buildBitmap(kSide, kSide, [&](int x, int y) {
        const float light = strongest(specks, float(x) + 0.5f, float(y) + 0.5f);
        const float alpha = 0.95f * light;
        return Rgba{Vec3{1.0f, 0.985f, 0.95f} * alpha, alpha};
    });
}

Bitmap whiteDust(int index) {
    constexpr int kSide = 192;
    const auto seed = std::uint32_t(300 + 23 * index);
    const auto specks = blobs<14>(seed, kSide, 0.44f, 0.006f, 0.026f);
    Raster<float> lint(kSide, kSide);
    HashStream draw(seed + 7);
    for (int i = 0; i < 1 + index % 2; ++i) drawLint(lint, draw, draw.range(40, 110), draw.range(1.3f, 2.2f));
    return buildBitmap(kSide, kSide, [&](int x, int y) {
        const float dust = strongest(specks, float(x) + 0.5f, float(y) + 0.5f);
        const float border = float(std::min({x, y, kSide - 1 - x, kSide - 1 - y}));
        const float alpha = std::max(0.9f * dust, 0.75f * lint.at(x, y)) * smoothstep(0, 12, border);
        return Rgba{Vec3{0.99f, 0.98f, 0.96f} * alpha, alpha};
    });
}

Bitmap darkPoints(int index) {
    constexpr int kSide = 192;
    const auto seed = std::uint32_t(500 + 29 * index);
    const auto spots = blobs<5>(seed, kSide, 0.30f, 0.01f, 0.12f);
    const auto fine = blobs<10>(seed + 5, kSide, 0.46f, 0.004f, 0.016f);
    return buildBitmap(kSide, kSide, [&](int px, int py) {
        const float x = float(px) + 0.5f, y = float(py) + 0.5f;
        const float thick = strongest(spots, x, y), all = std::max(thick, strongest(fine, x, y));
        // Thin where it tears, and there brown.
        const float body = all * (0.62f + 0.38f * fractalNoise(x * 0.11f, y * 0.11f, 3, seed + 9));
        const float alpha = clamp01(0.94f * body);
        return Rgba{
            mix(Vec3{0.34f, 0.20f, 0.09f}, Vec3{0.05f, 0.04f, 0.035f}, smoothstep(0.45f, 0.9f, body)) * alpha,
            alpha};
    });
}

Bitmap variegated(int index) {
    constexpr int kSide = 512;
    const auto seed = std::uint32_t(700 + 37 * index);
    constexpr std::array<std::array<Vec3, 2>, 5> kHues{{{{{0.95f, 0.42f, 0.16f}, {0.86f, 0.16f, 0.42f}}},
                                                        {{{0.10f, 0.55f, 0.62f}, {0.42f, 0.24f, 0.72f}}},
                                                        {{{0.98f, 0.74f, 0.26f}, {0.95f, 0.34f, 0.20f}}},
                                                        {{{0.82f, 0.20f, 0.50f}, {0.20f, 0.34f, 0.74f}}},
                                                        {{{0.30f, 0.66f, 0.46f}, {0.96f, 0.80f, 0.36f}}}}};
    const auto& hues = kHues[std::size_t(index) % kHues.size()];
    return buildBitmap(kSide, kSide, [&](int px, int py) {
        const float x = (float(px) + 0.5f) / kSide, y = (float(py) + 0.5f) / kSide;
        const float dx = 2 * x - 1, dy = 2 * y - 1;
        const float pull = 0.6f * (fractalNoise(x * 2.3f, y * 2.3f, 4, seed) - 0.5f);
        // How deep inside the stain: 0 on its shore.
        const float depth = 0.62f - std::sqrt(dx * dx + 1.5f * dy * dy) + 1.5f * pull;
        const float veil =
            smoothstep(0.0f, 0.5f, depth) * smoothstep(1.0f, 0.85f, std::max(std::abs(dx), std::abs(dy)));
        const float flow = fractalNoise(3 + x * 3.1f + pull, y * 3.1f - pull, 4, seed + 3);
        const float shore = std::exp(-(depth - 0.05f) * (depth - 0.05f) / 0.0012f) *
                            smoothstep(0.95f, 0.7f, std::sqrt(dx * dx + dy * dy));
        const float mottle = fractalNoise(x * 9, y * 9, 4, seed + 5);
        const float alpha = clamp01(veil * (0.14f + 0.62f * mottle * mottle) + 0.20f * shore * flow);
        return Rgba{mix(hues[0], hues[1], smoothstep(0.3f, 0.7f, flow)) * alpha, alpha};
    });
}

Bitmap scratches(int index) {
    constexpr int kWidth = 64, kHeight = 1024;
    const auto seed = std::uint32_t(900 + 41 * index);
    HashStream draw(seed);
    struct Line {
        float x, width, strength, from, to;
        std::uint32_t seed;
    };
    std::array<Line, 5> lines;
    for (Line& line : lines) {
        const float middle = draw.range(0.1f, 0.9f), half = draw.range(0.12f, 0.75f);
        line = {draw.range(8, 56), draw.range(0.7f, 1.7f), draw.range(0.25f, 0.9f),
                middle - half,     middle + half,          seed + std::uint32_t(&line - lines.data()) * 11};
    }
    lines[0].from = -1, lines[0].to = 2, lines[0].strength = 0.95f;
    const int used = 2 + index % 4;
    return buildBitmap(kWidth, kHeight, [&](int px, int py) {
        const float along = (float(py) + 0.5f) / kHeight;
        float most = 0;
        for (int i = 0; i < used; ++i) {
            const Line& line = lines[std::size_t(i)];
            // It wanders a little, skips, and is deeper here than there.
            const float x = line.x + 5 * (noise(along * 2.5f, 0.5f, line.seed) - 0.5f) +
                            1.2f * (noise(along * 21, 0.5f, line.seed + 1) - 0.5f);
            const float depth = smoothstep(0.30f, 0.62f, fractalNoise(along * 7, 2.5f, 4, line.seed + 2));
            const float ends =
                smoothstep(line.from, line.from + 0.08f, along) * smoothstep(line.to, line.to - 0.08f, along);
            const float d = std::abs(float(px) + 0.5f - x);
            most = std::max(most, line.strength * depth * ends * clamp01(0.5f + line.width - d));
        }
        most *= smoothstep(0.0f, 0.03f, along) * smoothstep(1.0f, 0.97f, along);
        return Rgba{Vec3{0.97f, 1.0f, 0.94f} * most, most};
    });
}

Bitmap dropout(int index) {
    constexpr int kWidth = 1024, kHeight = 24;
    const auto seed = std::uint32_t(1100 + 43 * index);
    return buildBitmap(kWidth, kHeight, [&](int px, int py) {
        const int row = py / 3;  // a line of the tape
        const float start = 0.02f + 0.5f * hash01(row, 1, seed) * hash01(row, 2, seed);
        const float length = 0.08f + 0.5f * hash01(row, 3, seed), x = (float(px) + 0.5f) / kWidth;
        const float tail =
            smoothstep(start, start + 0.004f, x) * smoothstep(start + length, start + 0.3f * length, x);
        const float spark = hash01(px / 5, row, seed + 9), off = hash01(row, 4, seed);
        const float body =
            tail * (0.35f + 0.65f * smoothstep(0.35f, 0.75f, spark)) * smoothstep(0.35f, 0.5f, off);
        const float within = std::abs(float(py % 3) - 1) < 0.5f ? 1.0f : 0.55f;
        const float alpha = body * within;
        const Vec3 color =
            mix(Vec3{1, 1, 1},
                hash01(px / 5, row, seed + 11) > 0.5f ? Vec3{0.75f, 0.92f, 1.0f} : Vec3{1.0f, 0.86f, 0.92f},
                0.8f);
        return Rgba{color * alpha, alpha};
    });
}

}  // namespace qv::assets
