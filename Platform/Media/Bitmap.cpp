#include "Platform/Media/Bitmap.h"

#include <algorithm>

#include "Platform/Media/Private/Vectorized.h"

namespace qv {

QV_VECTORIZED void premultiply(std::uint8_t* rgba, std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; ++i) {
        std::uint8_t* p = rgba + i * 4;
        const unsigned alpha = p[3];
        // Exactly round(x / 255) for every product of two bytes.
        const auto scale = [alpha](unsigned c) {
            const unsigned x = c * alpha + 128;
            return std::uint8_t((x + (x >> 8)) >> 8);
        };
        p[0] = scale(p[0]);
        p[1] = scale(p[1]);
        p[2] = scale(p[2]);
    }
}

QV_VECTORIZED void unpremultiply(std::uint8_t* rgba, std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; ++i) {
        std::uint8_t* p = rgba + i * 4;
        const float alpha = p[3];
        // No quotient comes close enough to a half for the division's own rounding to matter.
        const float factor = p[3] ? 255.0f : 0.0f, divisor = p[3] ? alpha : 1.0f;
        const auto divide = [factor, divisor](std::uint8_t c) {
            return std::uint8_t(std::min(int(float(c) * factor / divisor + 0.5f), 255));
        };
        p[0] = divide(p[0]);
        p[1] = divide(p[1]);
        p[2] = divide(p[2]);
    }
}

}  // namespace qv
