#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Platform/Media/Bitmap.h"

namespace qv {

/// The octagon around what a picture shows, in half-sides from its centre with y up: how far it reaches to
/// each side, and along x + y to each corner. A picture that shows nothing has negative reaches.
struct PictureOutline {
    float left = -1, right = -1, bottom = -1, top = -1;
    float leftBottom = -2, rightBottom = -2, leftTop = -2, rightTop = -2;

    bool isEmpty() const { return left + right <= 0; }
};

/// A picture as the atlas keeps it: at its own size and halved several times.
struct AtlasPicture {
    static constexpr int kLevels = 5;
    static constexpr int kLargestSide = 2048;

    struct Level {
        int width, height;
        std::vector<std::uint8_t> bytes;  ///< premultiplied RGBA
    };

    struct Place {
        int x, y;  ///< of the first pixel
    };
    using Places = std::array<Place, kLevels>;

    /// A larger picture is halved until no side exceeds `kLargestSide`.
    explicit AtlasPicture(const Bitmap& bitmap);

    int width, height;  ///< of the picture
    /// Level 0 repeats its last column and row up to a multiple of the coarsest level's pixels, so that every
    /// level begins at the same place; at level n the picture itself is `width` / 2ⁿ wide.
    std::array<Level, kLevels> levels;
    /// A rectangle that holds all levels and a transparent gap behind each, and where they lie in it.
    int cellWidth = 0, cellHeight = 0;
    Places places;
    PictureOutline outline;
};

}  // namespace qv
