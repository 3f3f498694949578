#pragma once

#include <algorithm>
#include <array>
#include <cmath>

#include "Platform/Media/PixelBuffer.h"

namespace qv::test {

/// Those that hold luma and chroma.
inline constexpr PixelFormat kYUVFormats[] = {
    PixelFormat::i420, PixelFormat::i422,       PixelFormat::i444,       PixelFormat::i420Alpha,
    PixelFormat::nv12, PixelFormat::i420Bits10, PixelFormat::i422Bits10, PixelFormat::i444Bits10};

/// The recommendations' own equations, in double: E'Y = kr R + kg G + kb B, E'Cb = (B - Y) / (2 - 2 kb),
/// quantised as (219 Y + 16) 2^(n-8) and (224 C + 128) 2^(n-8), or over the full code.
struct VideoStandard {
    double kr = 0, kb = 0, kg, lumaSpan, chromaSpan, lumaOffset, chromaOffset, maximum;

    VideoStandard(const ColorDescription& color, int bits) {
        switch (color.matrix) {
            case ColorMatrix::bt601:
                kr = 0.299, kb = 0.114;
                break;
            case ColorMatrix::bt709:
                kr = 0.2126, kb = 0.0722;
                break;
            case ColorMatrix::bt2020:
                kr = 0.2627, kb = 0.0593;
                break;
        }
        kg = 1 - kr - kb;
        const double unit = std::pow(2.0, bits - 8);
        maximum = 256 * unit - 1;
        lumaSpan = color.fullRange ? maximum : 219 * unit;
        chromaSpan = color.fullRange ? maximum : 224 * unit;
        lumaOffset = color.fullRange ? 0 : 16 * unit;
        chromaOffset = 128 * unit;
    }

    std::array<double, 3> toYUV(const std::array<double, 3>& rgb) const {  // rgb 0..255
        const double y = (kr * rgb[0] + kg * rgb[1] + kb * rgb[2]) / 255;
        const double cb = (rgb[2] / 255 - y) / (2 - 2 * kb), cr = (rgb[0] / 255 - y) / (2 - 2 * kr);
        return {y * lumaSpan + lumaOffset, cb * chromaSpan + chromaOffset, cr * chromaSpan + chromaOffset};
    }

    std::array<double, 3> toRGB(double yCode, double uCode, double vCode) const {
        const double y = (yCode - lumaOffset) / lumaSpan, cb = (uCode - chromaOffset) / chromaSpan,
                     cr = (vCode - chromaOffset) / chromaSpan;
        const double r = y + (2 - 2 * kr) * cr, b = y + (2 - 2 * kb) * cb, g = (y - kr * r - kb * b) / kg;
        std::array<double, 3> rgb{r * 255, g * 255, b * 255};
        for (double& c : rgb) c = std::clamp(c, 0.0, 255.0);
        return rgb;
    }
};

}  // namespace qv::test
