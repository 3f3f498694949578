#include "QVFilterExtension/Private/LayerImage.h"

#include <algorithm>

#include "Platform/ImageGraph/ImageNode.h"

namespace qv {

namespace {

constexpr int kTile = 8;

/// Whether anything is drawn in the tile.
bool isCovered(const Bitmap& picture, const PixelRect& tile) {
    for (int y = tile.y; y < tile.y + tile.height; ++y) {
        const std::uint8_t* alpha = picture.row(y) + std::size_t(tile.x) * 4 + 3;
        for (int x = 0; x < tile.width; ++x) {
            if (alpha[std::size_t(x) * 4] != 0) return true;
        }
    }
    return false;
}

/// The covered tiles of a row of tiles; neighbours as one.
std::vector<PixelRect> coveredRuns(const Bitmap& picture, int top) {
    const int height = std::min(kTile, picture.height - top);
    std::vector<PixelRect> runs;
    for (int x = 0; x < picture.width; x += kTile) {
        const PixelRect tile{x, top, std::min(kTile, picture.width - x), height};
        if (!isCovered(picture, tile)) continue;
        if (!runs.empty() && runs.back().x + runs.back().width == x)
            runs.back().width += tile.width;
        else
            runs.push_back(tile);
    }
    return runs;
}

/// Adds what is left of `from` without `hole`.
void subtract(const PixelRect& from, const PixelRect& hole, std::vector<PixelRect>& left) {
    const int x0 = std::clamp(hole.x, from.x, from.x + from.width);
    const int x1 = std::clamp(hole.x + hole.width, x0, from.x + from.width);
    const int y0 = std::clamp(hole.y, from.y, from.y + from.height);
    const int y1 = std::clamp(hole.y + hole.height, y0, from.y + from.height);
    const auto add = [&](int x, int y, int toX, int toY) {
        if (toX > x && toY > y) left.push_back({x, y, toX - x, toY - y});
    };
    add(from.x, from.y, from.x + from.width, y0);
    add(from.x, y0, x0, y1);
    add(x1, y0, from.x + from.width, y1);
    add(from.x, y1, from.x + from.width, from.y + from.height);
}

bool lineUp(const PixelRect& a, const PixelRect& b) {
    return a.x == b.x && a.width == b.width;
}

}  // namespace

std::vector<PixelRect> coveredParts(const Bitmap& picture) {
    std::vector<PixelRect> parts, above;
    for (int y = 0; y < picture.height; y += kTile) {
        const std::vector<PixelRect> runs = coveredRuns(picture, y);
        if (std::ranges::equal(runs, above, lineUp)) {
            for (PixelRect& part : above) part.height += std::min(kTile, picture.height - y);
            continue;
        }
        parts.insert(parts.end(), above.begin(), above.end());
        above = runs;
    }
    parts.insert(parts.end(), above.begin(), above.end());
    return parts;
}

std::vector<PixelRect> apart(const std::vector<PixelRect>& parts) {
    std::vector<PixelRect> result;
    for (const PixelRect& part : parts) {
        std::vector<PixelRect> pieces{part};
        for (const PixelRect& other : result) {
            std::vector<PixelRect> left;
            for (const PixelRect& piece : pieces) subtract(piece, other, left);
            pieces = std::move(left);
        }
        result.insert(result.end(), pieces.begin(), pieces.end());
    }
    return result;
}

MTIImage imageOfLayer(const UIImage& picture, std::string name) {
    const MTIImage image = MTIImage::imageWithUIImage(picture, MTIAlphaType::premultiplied, std::move(name));
    return image ? imageCoveredWithin(image, coveredParts(picture.bitmap())) : image;
}

}  // namespace qv
