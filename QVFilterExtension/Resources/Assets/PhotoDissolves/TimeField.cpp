#include "QVFilterExtension/Resources/Assets/PhotoDissolves/TimeField.h"

namespace qv::assets {

namespace {

/// Times in order, a sample of the field's.
std::vector<float> sortedSample(const TimeField& field) {
    constexpr int kEvery = 5;  // no divisor of a row
    std::vector<float> sample;
    const int count = field.width() * field.height();
    for (int i = 0; i < count; i += kEvery + (i / field.width()) % 2)
        sample.push_back(field.at(i % field.width(), i / field.width()));
    std::ranges::sort(sample);
    return sample;
}

/// The part of the sample that is earlier, 0..1.
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
    const std::vector<float> sorted = sortedSample(field);
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(width) * std::size_t(height) * 4);
    parallelFor(height, [&](int y) {
        std::uint8_t* out = pixels->data() + std::size_t(y) * std::size_t(width) * 4;
        for (int x = 0; x < width; ++x, out += 4) {
            const float rank = rankIn(sorted, field.at(x, y));
            const int code = std::min(255, int(255 * (brightFirst ? 1 - rank : rank) + hash01(x, y, 977)));
            std::fill_n(out, 3, std::uint8_t(code));
            out[3] = 255;
        }
    });
    return {width, height, std::move(pixels)};
}

}  // namespace qv::assets
