#include "Platform/ImageGraph/Private/AtlasPicture.h"

#include <algorithm>
#include <cstring>

namespace qv {

namespace {

using Level = AtlasPicture::Level;

constexpr int kGap = 1;  // transparent pixels between the levels

std::size_t offsetOf(const Level& level, int x, int y) {
    return (std::size_t(y) * std::size_t(level.width) + std::size_t(x)) * 4;
}

/// The picture with its last column and row repeated up to the given size.
Level extended(const Level& from, int width, int height) {
    Level to{width, height, std::vector<std::uint8_t>(std::size_t(width) * std::size_t(height) * 4)};
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* in = &from.bytes[offsetOf(from, 0, std::min(y, from.height - 1))];
        std::uint8_t* out = &to.bytes[offsetOf(to, 0, y)];
        std::memcpy(out, in, std::size_t(from.width) * 4);
        for (int x = from.width; x < width; ++x) std::memcpy(out + x * 4, in + (from.width - 1) * 4, 4);
    }
    return to;
}

/// Half the size, which is even: the mean of two by two premultiplied pixels.
Level halved(const Level& from) {
    Level to{from.width / 2, from.height / 2, {}};
    to.bytes.resize(std::size_t(to.width) * std::size_t(to.height) * 4);
    for (int y = 0; y < to.height; ++y) {
        const std::uint8_t* upper = &from.bytes[offsetOf(from, 0, 2 * y)];
        const std::uint8_t* lower = &from.bytes[offsetOf(from, 0, 2 * y + 1)];
        std::uint8_t* out = &to.bytes[offsetOf(to, 0, y)];
        for (int x = 0; x < to.width * 4; ++x) {
            const int left = x / 4 * 8 + x % 4;
            out[x] = std::uint8_t((upper[left] + upper[left + 4] + lower[left] + lower[left + 4] + 2) / 4);
        }
    }
    return to;
}

int roundedUp(int side, int multiple) {
    return (side + multiple - 1) / multiple * multiple;
}

PictureOutline outlineOf(const Level& picture) {
    const auto isClear = [&](int x, int y) {
        const std::uint8_t* p = &picture.bytes[offsetOf(picture, x, y)];
        return (p[0] | p[1] | p[2] | p[3]) == 0;
    };
    PictureOutline outline;
    for (int y = 0; y < picture.height; ++y) {
        int first = 0, last = picture.width - 1;
        while (first <= last && isClear(first, y)) ++first;
        while (last > first && isClear(last, y)) --last;
        if (first > last) continue;
        const float left = 1 - 2 * float(first) / float(picture.width);
        const float right = 2 * float(last + 1) / float(picture.width) - 1;
        const float top = 1 - 2 * float(y) / float(picture.height);
        const float bottom = 2 * float(y + 1) / float(picture.height) - 1;
        outline.left = std::max(outline.left, left);
        outline.right = std::max(outline.right, right);
        outline.bottom = std::max(outline.bottom, bottom);
        outline.top = std::max(outline.top, top);
        outline.leftBottom = std::max(outline.leftBottom, left + bottom);
        outline.rightBottom = std::max(outline.rightBottom, right + bottom);
        outline.leftTop = std::max(outline.leftTop, left + top);
        outline.rightTop = std::max(outline.rightTop, right + top);
    }
    return outline;
}

}  // namespace

AtlasPicture::AtlasPicture(const Bitmap& bitmap) {
    Level picture{bitmap.width, bitmap.height, *bitmap.pixels};
    while (picture.width > kLargestSide || picture.height > kLargestSide)
        picture = halved(extended(picture, roundedUp(picture.width, 2), roundedUp(picture.height, 2)));
    width = picture.width;
    height = picture.height;
    outline = outlineOf(picture);
    constexpr int kCoarsest = 1 << (kLevels - 1);
    levels[0] = extended(picture, roundedUp(width, kCoarsest), roundedUp(height, kCoarsest));
    for (std::size_t i = 1; i < levels.size(); ++i) levels[i] = halved(levels[i - 1]);

    // The smaller sizes stand in a column beside the picture, or in a row below it when it is wide.
    const bool isWide = width > height;
    Place next{0, 0};
    for (std::size_t i = 0; i < levels.size(); ++i) {
        places[i] = next;
        cellWidth = std::max(cellWidth, next.x + levels[i].width + kGap);
        cellHeight = std::max(cellHeight, next.y + levels[i].height + kGap);
        const bool goDown = isWide == (i == 0);
        (goDown ? next.y : next.x) += (goDown ? levels[i].height : levels[i].width) + kGap;
    }
}

}  // namespace qv
