#include <vector>

#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/FilmLooks/FilmLooks.h"
#include "QVFilterExtension/Resources/Assets/Support/Raster.h"
#include "QVFilterExtension/Resources/Assets/Support/Stroke.h"

namespace qv::assets {

namespace {

constexpr float kPi = 3.14159265f;
constexpr Vec3 kSoot{0.035f, 0.032f, 0.030f}, kSilver{0.95f, 0.95f, 0.93f}, kCream{1.0f, 0.955f, 0.86f};

using Coverage = Raster<float>;

void cover(float& pixel, float coverage) {
    pixel = std::max(pixel, coverage);
}

/// A speck with a ragged outline: `ragged` of its radius, in lobes and in crumbs.
struct Speck {
    float x, y, radius;
    float stretch = 1, angle = 0;  ///< how much longer than wide, and where to
    float ragged = 0.5f, soft = 1.5f;
    float hollow = 0;  ///< how much of the middle is missing: a dried drop
};

void drawSpeck(Coverage& layer, const Speck& speck, std::uint32_t seed) {
    const float reach = speck.radius * std::max(speck.stretch, 1.0f) * 1.6f + 4;
    const float c = std::cos(speck.angle), s = std::sin(speck.angle);
    const auto bound = [&](float v, int side) { return std::clamp(int(v), 0, side - 1); };
    for (int y = bound(speck.y - reach, layer.height()); y <= bound(speck.y + reach, layer.height()); ++y)
        for (int x = bound(speck.x - reach, layer.width()); x <= bound(speck.x + reach, layer.width()); ++x) {
            const float dx = float(x) + 0.5f - speck.x, dy = float(y) + 0.5f - speck.y;
            const float u = (dx * c + dy * s) / speck.stretch, v = (dy * c - dx * s);
            const float lobes =
                fractalNoise(u * 1.7f / speck.radius + 20, v * 1.7f / speck.radius + 20, 3, seed);
            const float crumbs = noise(float(x) * 0.2f, float(y) * 0.2f, seed + 9);
            const float r = std::hypot(u, v) / speck.radius;
            const float edge = 1 + speck.ragged * (1.9f * (lobes - 0.5f) + 0.22f * (crumbs - 0.5f));
            const float inside = smoothstep(-speck.soft, speck.soft, (edge - r) * speck.radius);
            const float hole = speck.hollow * smoothstep(0.9f, 0.45f, r / edge);
            cover(layer.at(x, y), inside * (1 - hole));
        }
}

struct Point {
    float x, y;
};

/// The way of a fibre: its bend drifts.
std::vector<Point> fibreWay(Point at, float heading, float length, float bend, HashStream& draw) {
    constexpr float kStep = 2;
    std::vector<Point> way{at};
    for (float gone = 0; gone < length; gone += kStep) {
        at = {at.x + kStep * std::cos(heading), at.y + kStep * std::sin(heading)};
        way.push_back(at);
        heading += bend * kStep;
        bend = 0.997f * (bend + draw.range(-0.0012f, 0.0012f) * kStep);
    }
    return way;
}

/// Along its way the width swells, and thins out towards the ends.
void drawFibre(Coverage& layer, const std::vector<Point>& way, float width) {
    for (std::size_t i = 0; i + 1 < way.size(); ++i) {
        const float t = float(i) / float(way.size());
        const float taper = std::sqrt(std::sin(kPi * clamp01(0.03f + 0.94f * t)));
        const float swell = width * taper * (0.75f + 0.5f * noise(9 * t, 0.5f, std::uint32_t(width * 1000)));
        stroke(layer, way[i].x, way[i].y, way[i + 1].x, way[i + 1].y, swell, swell, cover);
    }
}

/// The way moved so that it lies about the middle of a square.
std::vector<Point> centered(std::vector<Point> way, float side) {
    Point low = way.front(), high = way.front();
    for (const Point& p : way) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    const float fit = std::min(1.0f, 0.94f * side / std::max(high.x - low.x, high.y - low.y));
    for (Point& p : way)
        p = {0.5f * side + fit * (p.x - 0.5f * (low.x + high.x)),
             0.5f * side + fit * (p.y - 0.5f * (low.y + high.y))};
    return way;
}

/// The layer as a picture of one colour; what lies higher than the film's plane is a touch out of focus.
Bitmap inked(const Coverage& layer, Vec3 color, float alpha, bool isSoft) {
    return buildBitmap(layer.width(), layer.height(), [&](int x, int y) {
        float sum = layer.at(x, y);
        if (isSoft) {
            sum *= 4;
            for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
                sum += 2 * layer.clamped(x + dx, y + dy) + layer.clamped(x + dx + dy, y + dy - dx);
            sum /= 16;
        }
        const float tone = 0.96f + 0.08f * fractalNoise(float(x) * 0.05f, float(y) * 0.05f, 3, 3);
        const float shown = alpha * sum;
        return Rgba{Vec3{clamp01(color.x * tone), clamp01(color.y * tone), clamp01(color.z * tone)} * shown,
                    shown};
    });
}

}  // namespace

Bitmap blackFilmDirt(int index) {
    constexpr int kSide = 192;
    Coverage layer(kSide, kSide);
    HashStream draw(700 + std::uint32_t(index) * 31);
    const std::uint32_t seed = 40 + std::uint32_t(index) * 7;
    const float middle = kSide / 2;
    // A lump, a flake, a dried drop, a comma, a swarm; most with crumbs around them.
    switch (index) {
        case 0:
            drawSpeck(layer, {middle, middle, 44, 1.3f, 0.6f, 0.8f, 2}, seed);
            break;
        case 1:
            drawSpeck(layer, {middle, middle, 30, 2.3f, 0.4f, 0.55f, 1.5f}, seed);
            break;
        case 2:
            drawSpeck(layer, {middle, middle, 54, 1.1f, 1, 0.35f, 3, 0.75f}, seed);
            break;
        case 3:
            drawFibre(layer, fibreWay({60, 130}, -1.2f, 120, 0.016f, draw), 10);
            drawSpeck(layer, {62, 128, 15, 1.2f, 0, 0.6f}, seed);
            break;
        case 4:
            for (int i = 0; i < 16; ++i)
                drawSpeck(layer,
                          {middle + draw.range(-62, 62), middle + draw.range(-52, 52),
                           2.5f + 13 * std::pow(draw.next(), 3.0f), 1.4f, draw.range(0, 3), 0.7f},
                          seed + std::uint32_t(i));
            break;
        case 5:
            drawSpeck(layer, {middle - 14, middle, 27, 1.5f, 2.2f, 0.9f}, seed);
            drawSpeck(layer, {middle + 30, middle + 20, 15, 1.4f, 0.3f, 0.8f}, seed + 1);
            break;
        case 6:
            drawSpeck(layer, {middle, middle, 36, 1.6f, 2.6f, 1.1f, 1.2f}, seed);
            break;
        case 7:
            drawFibre(layer, fibreWay({40, 80}, 0.4f, 140, -0.012f, draw), 7);
            break;
        default:
            drawSpeck(layer, {middle, middle, 24, 3.1f, 1.3f, 0.7f, 1.3f}, seed);
    }
    for (int i = 0; i < 7; ++i)
        drawSpeck(layer,
                  {draw.range(24, kSide - 24), draw.range(24, kSide - 24), 1 + 4 * draw.next() * draw.next(),
                   1.3f, draw.range(0, 3), 0.6f},
                  seed + 50 + std::uint32_t(i));
    const bool isOnNegative = index == 1 || index == 5 || index == 7;
    return inked(layer, isOnNegative ? kSilver : kSoot, isOnNegative ? 0.95f : 0.9f, index % 2 == 0);
}

Bitmap fineDirt(int index) {
    constexpr int kSide = 128;
    Coverage layer(kSide, kSide);
    HashStream draw(900 + std::uint32_t(index) * 17);
    for (int i = 0; i < 1 + index % 3; ++i) {
        const float heading = draw.range(0, 2 * kPi), length = draw.range(40, 76);
        const Point start{64 - 0.45f * length * std::cos(heading) + draw.range(-14, 14),
                          64 - 0.45f * length * std::sin(heading) + draw.range(-14, 14)};
        const float bend = draw.range(-0.03f, 0.03f);
        drawFibre(layer, fibreWay(start, heading, length, bend, draw), draw.range(5, 9));
    }
    return inked(layer, kCream, 0.9f, true);
}

Bitmap lightDirt(int index) {
    constexpr int kSide = 128;
    Coverage layer(kSide, kSide);
    HashStream draw(1300 + std::uint32_t(index) * 19);
    const std::uint32_t seed = 400 + std::uint32_t(index) * 5;
    const int count = index % 3 == 2 ? 9 : index % 3 == 1 ? 2 : 1;
    for (int i = 0; i < count; ++i) {
        const float radius = count > 2 ? draw.range(3, 11) : draw.range(17, 30),
                    away = count > 1 ? 34.0f : 4.0f;
        drawSpeck(layer,
                  {64 + draw.range(-away, away), 64 + draw.range(-away, away), radius, draw.range(1, 2.4f),
                   draw.range(0, 3), draw.range(0.4f, 1.1f), 1.6f, index == 4 ? 0.7f : 0.0f},
                  seed + std::uint32_t(i));
    }
    if (index == 7) drawFibre(layer, fibreWay({30, 64}, 0.7f, 70, -0.02f, draw), 6);
    const bool isDark = index == 3 || index == 8;
    return inked(layer, isDark ? Vec3{0.10f, 0.07f, 0.05f} : kCream, isDark ? 0.75f : 0.92f, true);
}

Bitmap filmHair(int index) {
    constexpr int kSide = 512;
    Coverage layer(kSide, kSide);
    HashStream draw(77 + std::uint32_t(index) * 101);
    // Where it heads, how long, how thick and how curled it is.
    static constexpr struct {
        float heading, length, width, bend;
    } kHairs[] = {{-0.5f, 470, 4.4f, 0.0022f},  {0.9f, 560, 3.8f, -0.0046f}, {-1.1f, 620, 3.2f, 0.0064f},
                  {0.25f, 430, 5.0f, -0.0016f}, {1.3f, 760, 3.0f, -0.0085f}, {-0.9f, 520, 4.0f, 0.0034f}};
    const auto& hair = kHairs[index];
    drawFibre(layer, centered(fibreWay({}, hair.heading, hair.length, hair.bend, draw), kSide), hair.width);
    return inked(layer, kSoot, 0.92f, true);
}

Bitmap filmScratch(int index) {
    constexpr int kWidth = 64, kHeight = 1024;
    Coverage layer(kWidth, kHeight);
    HashStream draw(2100 + std::uint32_t(index) * 13);
    const int lines = 1 + (index * 2) % 4;
    for (int i = 0; i < lines; ++i) {
        float x = draw.range(16, 48);
        const float lean = draw.range(-0.006f, 0.006f), start = draw.range(10, 260);
        const float end = kHeight - draw.range(10, 380),
                    width = draw.range(0.8f, 2.4f) / (1 + 0.3f * float(i));
        for (float y = start; y < end;) {
            const float next = y + draw.range(6, 46);
            const float ends = smoothstep(start, start + 120, y) * smoothstep(end, end - 120, y);
            const float nextX = x + lean * (next - y) + draw.range(-0.35f, 0.35f);
            // The film did not always touch what scratched it.
            if (draw.next() < 0.86f) stroke(layer, x, y, nextX, next, width * ends, width * ends, cover);
            x = nextX, y = next;
        }
    }
    // Into the emulsion: its yellow and green layers show beside the bare base.
    return inked(layer, index % 3 == 1 ? Vec3{0.86f, 1.0f, 0.78f} : kCream, 0.95f, false);
}

Bitmap filmBurn(int index) {
    constexpr int kSide = 512;
    const std::uint32_t seed = 5000 + std::uint32_t(index) * 37;
    HashStream draw(seed);
    const float x0 = draw.range(0.46f, 0.54f), y0 = draw.range(0.46f, 0.54f), stretch = draw.range(1, 1.35f),
                turn = draw.range(0, kPi), hot = index % 3 == 2 ? 0.0f : draw.range(0.10f, 0.19f);
    return buildBitmap(kSide, kSide, [&](int px, int py) {
        const float x = (float(px) + 0.5f) / kSide, y = (float(py) + 0.5f) / kSide;
        const float dx = x - x0, dy = y - y0, c = std::cos(turn), s = std::sin(turn);
        const float r = std::hypot((dx * c + dy * s) / stretch, dy * c - dx * s);
        const float fine = fractalNoise(13 * x, 13 * y, 4, seed + 7) - 0.5f;
        const float lobes = fractalNoise(3.1f * x + 3 + 0.5f * fine, 3.1f * y - 0.5f * fine, 3, seed) - 0.5f;
        const float at = 1.2f * r + 0.30f * lobes + 0.06f * fine;  // 0 in the middle of the burn
        // Blisters stand around the hole, each with a lit and a shaded side.
        const NoiseSample blister = noiseWithSlope(26 * x, 26 * y, seed + 11);
        const float lit = 0.5f + 0.035f * (blister.dx + blister.dy);
        const float scorched = smoothstep(0.34f, 0.16f, at);
        const float hole = hot > 0 ? smoothstep(hot, hot - 0.035f, at) : 0;
        const float rim = hot > 0 ? smoothstep(hot + 0.05f, hot, at) * (1 - hole) : 0;
        const Vec3 brown =
            mix(Vec3{0.30f, 0.13f, 0.04f}, Vec3{0.07f, 0.03f, 0.015f}, scorched) *
            (0.6f + 0.9f * lit * smoothstep(0.55f, 0.8f, blister.value) + 0.3f * blister.value);
        const Vec3 lamp =
            mix(Vec3{1.0f, 0.90f, 0.62f}, Vec3{1, 0.99f, 0.95f}, smoothstep(hot, hot - 0.10f, at));
        const Vec3 color = mix(mix(brown, Vec3{1.0f, 0.55f, 0.14f}, 0.9f * rim), lamp, hole);
        const float border = smoothstep(0.5f, 0.42f, std::max(std::abs(x - 0.5f), std::abs(y - 0.5f)));
        const float alpha = border * std::max(hole, 0.94f * smoothstep(0.42f, 0.26f, at));
        return Rgba{color * alpha, alpha};
    });
}

}  // namespace qv::assets
