#include "QVFilterExtension/Resources/Assets/TornPapers/TornPaper.h"

#include <array>
#include <numbers>

#include "QVFilterExtension/Resources/Assets/Support/Stroke.h"

namespace qv::assets {

namespace {

/// Deeper inside a sheet than this, in units, no tear is felt.
constexpr float kTearReach = 110;

/// Noise of one scale: `units` long, ±`height` units.
struct Ripple {
    float units, height;
};
/// From the sweep of the hand to single fibres.
constexpr std::array<Ripple, 6> kRaggedness{
    {{230, 9}, {75, 5.5f}, {26, 3.2f}, {10, 1.9f}, {4.2f, 1.2f}, {1.9f, 0.7f}}};
constexpr std::array<Ripple, 4> kLipRaggedness{{{34, 4.5f}, {12, 3.0f}, {4.6f, 1.7f}, {2.0f, 0.9f}}};

template <std::size_t count>
float ripples(const std::array<Ripple, count>& scales, float x, float y, std::uint32_t seed) {
    float sum = 0;
    for (const Ripple& ripple : scales)
        sum += ripple.height * (2 * noise(x / ripple.units, y / ripple.units, seed++) - 1);
    return sum;
}

/// Where a place lies with regard to a polygon.
struct Place {
    float depth;  ///< distance to the outline, above 0 inside
    float lip;    ///< of the tears nearby
};

Place placeIn(const std::vector<Tear>& tears, float x, float y, float blend) {
    float nearest = 1e12f, lip = 0, weights = 0;
    bool inside = false;
    for (std::size_t i = 0; i < tears.size(); ++i) {
        const Tear& a = tears[i];
        const Tear& b = tears[(i + 1) % tears.size()];
        const float ex = b.x - a.x, ey = b.y - a.y, px = x - a.x, py = y - a.y;
        const float t = clamp01((px * ex + py * ey) / (ex * ex + ey * ey));
        const float distance = std::hypot(px - t * ex, py - t * ey);
        nearest = std::min(nearest, distance);
        const float weight = 1 / (1 + distance * distance / (blend * blend));
        lip += weight * weight * a.lip;
        weights += weight * weight;
        if ((a.y <= y) != (b.y <= y) && (px * ey - py * ex) * (b.y > a.y ? 1.0f : -1.0f) < 0)
            inside = !inside;
    }
    return {inside ? nearest : -nearest, lip / weights};
}

Raster<float> blurred(const Raster<float>& raster, float sigma) {
    const int reach = int(std::ceil(3 * sigma));
    std::vector<float> weights;
    float total = 0;
    for (int i = -reach; i <= reach; ++i) {
        weights.push_back(std::exp(-0.5f * float(i * i) / (sigma * sigma)));
        total += weights.back();
    }
    const auto pass = [&](const Raster<float>& from, int stepX, int stepY) {
        Raster<float> to(from.width(), from.height());
        parallelFor(from.height(), [&](int y) {
            for (int x = 0; x < from.width(); ++x) {
                float sum = 0;
                for (int i = -reach; i <= reach; ++i)
                    sum += weights[std::size_t(i + reach)] * from.clamped(x + i * stepX, y + i * stepY);
                to.at(x, y) = sum / total;
            }
        });
        return to;
    };
    return pass(pass(raster, 1, 0), 0, 1);
}

/// A fibre: a line that bends one way, thinner towards its end.
struct Fibre {
    float x, y, angle, length, width, bend;  ///< pixels and radians; `bend` over the whole length
};

template <class Paint>
void drawFibre(Raster<float>& raster, Fibre fibre, Paint&& paint) {
    constexpr int kSegments = 6;
    for (int i = 0; i < kSegments; ++i) {
        const float step = fibre.length / kSegments;
        const float x = fibre.x + step * std::cos(fibre.angle), y = fibre.y + step * std::sin(fibre.angle);
        const auto width = [&](int at) { return fibre.width * (1 - 0.6f * float(at) / kSegments); };
        stroke(raster, fibre.x, fibre.y, x, y, width(i), width(i + 1), paint);
        fibre.x = x, fibre.y = y;
        fibre.angle += fibre.bend / kSegments;
    }
}

/// At a place in units from the picture's top left.
Vec3 faceColor(PaperStock stock, float u, float v) {
    switch (stock) {
        case PaperStock::cream:
            return {0.925f, 0.893f, 0.83f};
        case PaperStock::white:
            return {0.965f, 0.958f, 0.945f};
        case PaperStock::kraft:
            return {0.74f, 0.585f, 0.42f};
        case PaperStock::ruled:
            break;
    }
    // Blue lines, and a red one for the margin.
    const float line = std::abs(v / 46 - std::round(v / 46)) * 46, margin = std::abs(u - 190);
    const Vec3 lined = mix(Vec3{0.955f, 0.95f, 0.93f}, Vec3{0.56f, 0.70f, 0.86f}, clamp01(1.9f - line));
    return mix(lined, Vec3{0.90f, 0.47f, 0.45f}, clamp01(2.2f - margin));
}

}  // namespace

TornPaper::TornPaper(const TornPiece& piece)
    : piece_(piece),
      outer_(piece.width, piece.height),
      inner_(piece.width, piece.height),
      fibres_(piece.width, piece.height),
      coverage_(piece.width, piece.height),
      relief_(piece.width, piece.height),
      shadow_(piece.width, piece.height) {
    tear();
    addFibres();
    addLooseFibres();
    raiseRelief();
    throwShadow();
}

void TornPaper::tear() {
    const std::uint32_t seed = hash32(piece_.seed);
    parallelFor(piece_.height, [&](int y) {
        for (int x = 0; x < piece_.width; ++x) {
            const float fromMiddleX = float(x) + 0.5f - float(piece_.width) / 2,
                        fromMiddleY = float(y) + 0.5f - float(piece_.height) / 2;
            const Place place = placeIn(piece_.tears, fromMiddleX, fromMiddleY, 60 * piece_.unit);
            const float depth = (piece_.hole ? -place.depth : place.depth) / piece_.unit;
            const float u = fromMiddleX / piece_.unit, v = fromMiddleY / piece_.unit;
            float& outer = outer_.at(x, y);
            float& inner = inner_.at(x, y);
            outer = inner = depth;
            if (std::abs(depth) < kTearReach) {
                outer += ripples(kRaggedness, u, v, seed);
                // The core shows in long stretches, widely here and hardly there.
                const float stretch = noise(u / 120, v / 120, seed + 20);
                const float lip = place.lip * mix(0.25f, 1.7f, stretch * stretch * (3 - 2 * stretch)) +
                                  ripples(kLipRaggedness, u, v, seed + 30);
                inner = outer - std::max(lip, 1.8f);
            }
            const float fuzz = 0.9f * (noise(u / 1.4f, v / 1.4f, seed + 40) - 0.5f);
            coverage_.at(x, y) = smoothstep(-0.7f, 1.1f, outer + fuzz);
        }
    });
}

void TornPaper::addFibres() {
    HashStream random(piece_.seed + 1);
    const float area = float(piece_.width) * float(piece_.height) / (piece_.unit * piece_.unit);
    for (int i = 0; i < int(area / 60); ++i) {
        const float x = random.next() * float(piece_.width), y = random.next() * float(piece_.height);
        const Fibre fibre{x,
                          y,
                          random.range(0, 2 * std::numbers::pi_v<float>),
                          piece_.unit * random.range(5, 26),
                          piece_.unit * random.range(0.6f, 1.3f),
                          random.range(-1.4f, 1.4f)};
        const float height = random.range(-1, 1);
        const float depth = outer_.at(int(x), int(y));
        if (depth > -5 && depth < kTearReach)
            drawFibre(fibres_, fibre,
                      [&](float& there, float coverage) { there = mix(there, height, coverage); });
    }
}

/// Fibres that the tear has pulled out and left standing over the edge.
void TornPaper::addLooseFibres() {
    HashStream random(piece_.seed + 2);
    const float area = float(piece_.width) * float(piece_.height) / (piece_.unit * piece_.unit);
    Raster<float> loose(piece_.width, piece_.height);
    for (int i = 0; i < int(area / 5); ++i) {
        const int x = int(random.next() * float(piece_.width)), y = int(random.next() * float(piece_.height));
        const float turned = random.range(-1.1f, 1.1f), length = random.next(),
                    bend = random.range(-1.6f, 1.6f);
        const float depth = outer_.at(x, y);
        if (depth < 0 || depth > 1.6f) continue;
        const int reach = std::max(2, int(3 * piece_.unit));
        const float outwardsX = outer_.clamped(x - reach, y) - outer_.clamped(x + reach, y),
                    outwardsY = outer_.clamped(x, y - reach) - outer_.clamped(x, y + reach);
        drawFibre(loose,
                  {float(x), float(y), std::atan2(outwardsY, outwardsX) + turned,
                   piece_.unit * mix(2, 11, length * length * length), piece_.unit * 0.75f, bend},
                  [](float& there, float coverage) { there = std::max(there, 0.65f * coverage); });
    }
    parallelFor(piece_.height, [&](int y) {
        for (int x = 0; x < piece_.width; ++x) {
            float& coverage = coverage_.at(x, y);
            coverage = std::max(coverage, loose.at(x, y));
        }
    });
}

void TornPaper::raiseRelief() {
    const std::uint32_t seed = hash32(piece_.seed + 3);
    parallelFor(piece_.height, [&](int y) {
        for (int x = 0; x < piece_.width; ++x) {
            const float u = float(x) / piece_.unit, v = float(y) / piece_.unit;
            const float outer = outer_.at(x, y), inner = inner_.at(x, y);
            const float onFace = clamp01(inner + 0.5f);
            const float rough = mix(1.0f, 0.45f, onFace);
            const float lip = std::max(outer - inner, 1.0f);
            // The core thins out towards the edge; the face is a skin on top of it.
            relief_.at(x, y) =
                2.4f * std::sqrt(clamp01(outer / lip)) + 0.9f * onFace +
                rough * (0.8f * noise(u / 1.5f, v / 1.5f, seed) + 1.3f * noise(u / 4.1f, v / 4.1f, seed + 1) +
                         0.8f * fibres_.at(x, y)) +
                14 * fractalNoise(u / 190, v / 190, 3, seed + 2);
        }
    });
}

void TornPaper::throwShadow() {
    // Close by where the paper touches the ground, wide where it stands off it.
    const float near = 3.2f * piece_.unit, wide = 13 * piece_.unit;
    const Raster<float> half = coverage_.halved(), quarter = half.halved();
    const Raster<float> contact = blurred(half, near / 2), soft = blurred(quarter, wide / 4);
    parallelFor(piece_.height, [&](int y) {
        for (int x = 0; x < piece_.width; ++x) {
            const auto under = [&](const Raster<float>& blurredPaper, float reduction, float left,
                                   float down) {
                return blurredPaper.sample((float(x) + 0.5f + left * piece_.unit) / reduction,
                                           (float(y) + 0.5f - down * piece_.unit) / reduction);
            };
            const float through =
                (1 - 0.34f * under(contact, 2, 1.6f, 3)) * (1 - 0.46f * under(soft, 4, 6, 13));
            shadow_.at(x, y) = 1 - through;
        }
    });
}

Rgba TornPaper::shade(int x, int y, bool blank) const {
    const float alpha = coverage_.at(x, y), shadow = shadow_.at(x, y);
    const float onFace = clamp01(inner_.at(x, y) * piece_.unit + 0.5f);
    if (!blank && onFace == 1) return {{1, 1, 1}, 1};  // hidden
    constexpr Vec3 kShadow{0.045f, 0.035f, 0.03f}, kCore{0.975f, 0.962f, 0.935f};
    Vec3 paper = kCore;
    {
        const float u = float(x) / piece_.unit, v = float(y) / piece_.unit;
        const float cloud = fractalNoise(u / 40, v / 40, 4, piece_.seed + 50) - 0.5f;
        const float grain = hash01(x, y, piece_.seed + 51) - 0.5f;
        // Fibres that did not bleach stand out of a face.
        const float fibre = fibres_.at(x, y);
        const float tint = 1 + 0.08f * cloud + 0.09f * fibre;
        if (blank) paper = mix(kCore, faceColor(piece_.stock, u, v) * tint, onFace);
        const int step = std::max(1, int(piece_.unit + 0.5f));
        const float rise = relief_.clamped(x + step, y - step) - relief_.clamped(x - step, y + step);
        float light = 1 - 0.062f * rise * piece_.unit / float(step) + 0.035f * cloud + 0.02f * grain;
        // The skin's rim shades the core beside it.
        light *= 1 - 0.16f * (1 - onFace) * std::exp(std::min(inner_.at(x, y), 1.0f) / 2.2f);
        paper *= std::clamp(light, 0.62f, 1.06f);
    }
    return {kShadow * (shadow * (1 - alpha)) + paper * alpha, alpha + shadow * (1 - alpha)};
}

Bitmap TornPaper::face() const {
    return buildBitmap(piece_.width, piece_.height, [&](int x, int y) {
        const float alpha = clamp01(inner_.at(x, y) * piece_.unit + 0.5f);
        return Rgba{{alpha, alpha, alpha}, alpha};
    });
}

Bitmap TornPaper::underPhoto() const {
    return buildBitmap(piece_.width, piece_.height, [&](int x, int y) { return shade(x, y, false); });
}

Bitmap TornPaper::blank() const {
    return buildBitmap(piece_.width, piece_.height, [&](int x, int y) { return shade(x, y, true); });
}

Bitmap TornPaper::framing(int windowWidth, int windowHeight) const {
    return buildBitmap(piece_.width, piece_.height, [&](int x, int y) {
        const float fromX = std::abs(float(x) + 0.5f - float(piece_.width) / 2) - float(windowWidth) / 2,
                    fromY = std::abs(float(y) + 0.5f - float(piece_.height) / 2) - float(windowHeight) / 2;
        const float outside = std::max(fromX, fromY);
        Rgba paper = shade(x, y, true);
        paper.color *= 1 - 0.3f * clamp01(1 - std::abs(outside - 1));
        return outside < 0 ? Rgba{} : paper;
    });
}

Bitmap TornPaper::opening() const {
    return buildBitmap(piece_.width, piece_.height, [&](int x, int y) {
        const float alpha = clamp01(1.5f - inner_.at(x, y) * piece_.unit);
        return Rgba{{alpha, alpha, alpha}, alpha};
    });
}

Bitmap TornPaper::rim() const {
    return buildBitmap(piece_.width, piece_.height, [&](int x, int y) {
        const float seen = clamp01(1.5f - inner_.at(x, y) * piece_.unit);
        const Rgba paper = shade(x, y, false);
        return Rgba{paper.color * seen, paper.alpha * seen};
    });
}

}  // namespace qv::assets
