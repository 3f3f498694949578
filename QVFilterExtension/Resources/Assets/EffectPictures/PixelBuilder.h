#pragma once

#include <cmath>

#include "Platform/Media/Bitmap.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

/// Premultiplied.
struct Rgba {
    Vec3 color;
    float alpha = 0;
};

/// A bitmap of what `shade(x, y)` gives for each pixel. Faint gradients are kept from banding by dither of
/// one code, the same in every channel so that colour never exceeds alpha.
template <class Shade>
Bitmap buildBitmap(int width, int height, Shade&& shade) {
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(width) * std::size_t(height) * 4);
    parallelFor(height, [&](int y) {
        std::uint8_t* out = pixels->data() + std::size_t(y) * std::size_t(width) * 4;
        for (int x = 0; x < width; ++x, out += 4) {
            const Rgba pixel = shade(x, y);
            const float dither = hash01(x, y, 977);
            const auto code = [&](float v) {
                return std::uint8_t(std::min(255.0f, std::floor(255 * clamp01(v) + dither)));
            };
            out[3] = code(pixel.alpha);
            out[0] = std::min(code(pixel.color.x), out[3]);
            out[1] = std::min(code(pixel.color.y), out[3]);
            out[2] = std::min(code(pixel.color.z), out[3]);
        }
    });
    return {width, height, std::move(pixels)};
}

}  // namespace qv::assets
