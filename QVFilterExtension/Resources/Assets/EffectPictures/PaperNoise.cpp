#include <array>

#include "QVFilterExtension/Resources/Assets/EffectPictures/EffectPictures.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"

namespace qv::assets {

namespace {

constexpr int kSide = 512;

int wrapped(int cell, int cells) {
    return (cell % cells + cells) % cells;
}

/// Where paper is folded: facets that meet along straight lines.
struct Folds {
    float dx = 0, dy = 0;  ///< slope
    float edge = 1;        ///< distance to the nearest fold, cells
};

/// The lower envelope of bowls of one shape that stand at random heights around the cells of a grid of
/// `cells`×`cells`: two bowls meet along a straight line. `x` and `y` are in cells; the field repeats every
/// `cells`.
Folds foldsAt(float x, float y, int cells, std::uint32_t seed) {
    const int cellX = floorToInt(x), cellY = floorToInt(y);
    float lowest = 1e9f, second = 1e9f;
    float lowestX = 0, lowestY = 0, secondX = 0, secondY = 0;
    for (int j = cellY - 2; j <= cellY + 2; ++j)
        for (int i = cellX - 2; i <= cellX + 2; ++i) {
            const int wi = wrapped(i, cells), wj = wrapped(j, cells);
            const float dx = x - (float(i) + hash01(wi, wj, seed)),
                        dy = y - (float(j) + hash01(wi, wj, seed + 1));
            const float height = dx * dx + dy * dy + 0.7f * hash01(wi, wj, seed + 2);
            if (height < lowest) {
                second = lowest, secondX = lowestX, secondY = lowestY;
                lowest = height, lowestX = dx, lowestY = dy;
            } else if (height < second) {
                second = height, secondX = dx, secondY = dy;
            }
        }
    const float apart = std::max(std::hypot(lowestX - secondX, lowestY - secondY), 0.05f);
    return {lowestX, lowestY, (second - lowest) / (2 * apart)};
}

/// Value noise that repeats every `cells`; 0..1.
float wrappingNoise(float x, float y, int cellsX, int cellsY, std::uint32_t seed) {
    const int ix = floorToInt(x), iy = floorToInt(y);
    const float u = x - float(ix), v = y - float(iy);
    const auto corner = [&](int i, int j) {
        return hash01(wrapped(ix + i, cellsX), wrapped(iy + j, cellsY), seed);
    };
    const float su = u * u * (3 - 2 * u), sv = v * v * (3 - 2 * v);
    return mix(mix(corner(0, 0), corner(1, 0), su), mix(corner(0, 1), corner(1, 1), su), sv);
}

/// From large folds to small dents; valleys take turns with ridges.
struct Layer {
    int cells;
    float slope, wear;
};
constexpr std::array<Layer, 4> kLayers{
    {{5, 0.42f, 0.30f}, {8, -0.34f, 0.24f}, {15, 0.17f, 0.10f}, {29, -0.07f, 0.03f}}};

/// The paper at a place, 0..1 across and down: slopes and wear of all layers.
Vec3 paperAt(float u, float v) {
    Vec3 paper;
    for (std::size_t i = 0; i < kLayers.size(); ++i) {
        const Layer& layer = kLayers[i];
        const float cells = float(layer.cells);
        const Folds folds = foldsAt(u * cells, v * cells, layer.cells, std::uint32_t(40 * i + 7));
        // A worn fold is as wide as the paper is thick, whatever the facets' size.
        const float wear = layer.wear * std::exp(-folds.edge / cells * 380);
        paper += {layer.slope * folds.dx, layer.slope * folds.dy, wear};
    }
    return paper;
}

}  // namespace

Bitmap paperNoise() {
    return buildBitmap(kSide, kSide, [](int px, int py) {
        Vec3 paper;
        constexpr int kFiner = 4;
        for (int i = 0; i < kFiner * kFiner; ++i) {
            const float x = float(i % kFiner) + 0.5f, y = float(i / kFiner) + 0.5f;
            paper += paperAt((float(px) + x / kFiner) / kSide, (float(py) + y / kFiner) / kSide);
        }
        paper *= 1.0f / (kFiner * kFiner);
        const float u = (float(px) + 0.5f) / kSide, v = (float(py) + 0.5f) / kSide;
        // Fibres lie across one another; grain is as fine as the field.
        const float fibres =
            wrappingNoise(u * 32, v * 128, 32, 128, 300) + wrappingNoise(u * 128, v * 32, 128, 32, 301) - 1;
        const float grain = hash01(px, py, 302) - 0.5f;
        return Rgba{
            {0.5f + 0.5f * paper.x, 0.5f + 0.5f * paper.y, 0.5f + paper.z + 0.10f * fibres + 0.16f * grain},
            1};
    });
}

}  // namespace qv::assets
