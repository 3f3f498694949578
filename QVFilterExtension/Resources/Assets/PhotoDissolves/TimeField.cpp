#include "QVFilterExtension/Resources/Assets/PhotoDissolves/TimeField.h"

namespace qv::assets {

namespace {

/// The part of all times that is earlier, 0..1.
float rankIn(const std::vector<float>& sorted, float time) {
    const auto above = std::ranges::lower_bound(sorted, time);
    if (above == sorted.begin()) return 0;
    if (above == sorted.end()) return 1;
    const float below = *(above - 1);
    const float between = *above > below ? (time - below) / (*above - below) : 0;
    return (float(above - sorted.begin() - 1) + between) / float(sorted.size() - 1);
}

}  // namespace

Bitmap evenGreys(const TimeField& field, bool brightFirst) {
    const int width = field.width(), height = field.height();
    std::vector<float> sorted;
    for (int y = 0; y < height; ++y) sorted.insert(sorted.end(), field.row(y), field.row(y) + width);
    std::ranges::sort(sorted);

    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(width) * std::size_t(height) * 4);
    parallelFor(height, [&](int y) {
        std::uint8_t* out = pixels->data() + std::size_t(y) * std::size_t(width) * 4;
        for (int x = 0; x < width; ++x, out += 4) {
            const float rank = rankIn(sorted, field.at(x, y));
            // The mean of the three codes goes in thirds.
            const float level = 255 * (brightFirst ? 1 - rank : rank) + hash01(x, y, 977) / 3;
            for (int c = 0; c < 3; ++c) out[c] = std::uint8_t(std::min(255, int(level + float(c) / 3)));
            out[3] = 255;
        }
    });
    return {width, height, std::move(pixels)};
}

}  // namespace qv::assets
