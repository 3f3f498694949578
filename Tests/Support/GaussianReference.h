#pragma once

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "Tests/Support/Picture.h"

namespace qv::test {

/// The sampled Gaussian in double, out to five standard deviations, over a picture whose border pixels go
/// on.
inline std::vector<double> blurred(const Bitmap& bitmap, double deviation) {
    const int reach = int(std::ceil(5 * deviation)) + 1, w = bitmap.width, h = bitmap.height;
    std::vector<double> weights;
    double sum = 0;
    for (int i = -reach; i <= reach; ++i) {
        weights.push_back(std::exp(-0.5 * i * i / (deviation * deviation)));
        sum += weights.back();
    }
    auto run = [&](const std::vector<double>& in, bool vertical) {
        std::vector<double> out(in.size(), 0.0);
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < w; ++x) {
                double* to = &out[std::size_t(y * w + x) * 4];
                for (int i = -reach; i <= reach; ++i) {
                    const int sx = vertical ? x : std::clamp(x + i, 0, w - 1);
                    const int sy = vertical ? std::clamp(y + i, 0, h - 1) : y;
                    const double weight = weights[std::size_t(i + reach)] / sum;
                    for (int c = 0; c < 4; ++c)
                        to[c] += weight * in[std::size_t(sy * w + sx) * 4 + std::size_t(c)];
                }
            }
        }
        return out;
    };
    const std::vector<double> in(bitmap.pixels->begin(), bitmap.pixels->end());
    return run(run(in, false), true);
}

struct Difference {
    double psnr, worst;  ///< dB, steps of 255
};

inline Difference difference(const Bitmap& bitmap, const std::vector<double>& reference) {
    double squares = 0, worst = 0;
    for (std::size_t i = 0; i < reference.size(); ++i) {
        const double d = std::abs((*bitmap.pixels)[i] - reference[i]);
        squares += d * d;
        worst = std::max(worst, d);
    }
    const double mean = squares / double(reference.size());
    return {mean == 0 ? 99 : 10 * std::log10(255 * 255 / mean), worst};
}

inline Bitmap noise(int width, int height) {
    std::mt19937 generator(5);
    return makeBitmap(width, height, [&](int, int) {
        const auto bits = generator();
        return Pixel{float(bits & 255) / 255, float(bits >> 8 & 255) / 255, float(bits >> 16 & 1), 1};
    });
}

/// Hard edges of all directions, thin lines, lines along the border, a transparent part.
inline Bitmap edges(int width, int height) {
    return makeBitmap(width, height, [&](int x, int y) {
        const bool board = ((x / 37) + (y / 23)) % 2 != 0, diagonal = x + y > (width + height) / 2;
        const bool line = x % 61 == 5 || y % 53 == 7, border = x == 0 || y == height - 1;
        return Pixel{float(board != diagonal), float(line || border), float(border),
                     x > width / 2 && board ? 0.0f : 1.0f};
    });
}

}  // namespace qv::test
