#include "Platform/Media/Bitmap.h"

namespace qv {

void premultiply(std::uint8_t* rgba, std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; ++i) {
        std::uint8_t* p = rgba + i * 4;
        for (int c = 0; c < 3; ++c) {
            // Exactly round(x / 255) for every product of two bytes.
            const unsigned x = unsigned(p[c]) * p[3] + 128;
            p[c] = std::uint8_t((x + (x >> 8)) >> 8);
        }
    }
}

void unpremultiply(std::uint8_t* rgba, std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; ++i) {
        std::uint8_t* p = rgba + i * 4;
        const unsigned alpha = p[3];
        if (alpha == 255) continue;
        for (int c = 0; c < 3; ++c) {
            const unsigned value = alpha ? (p[c] * 255u + alpha / 2) / alpha : 0;
            p[c] = std::uint8_t(value < 255 ? value : 255);
        }
    }
}

}  // namespace qv
