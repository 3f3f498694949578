#include "Platform/Media/Private/PixelRows.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "Platform/Media/Private/Vectorized.h"

namespace qv::rows {
namespace {

static_assert(std::endian::native == std::endian::little, "pixels are read as little-endian pairs of bytes");

/// Two neighbouring bytes of an RGBA pixel.
using BytePair = std::uint16_t __attribute__((may_alias));

template <class Sample>
constexpr int kBits = sizeof(Sample) == 1 ? 8 : 10;
/// Scales a sample to 2^7 per 8-bit step.
template <class Sample>
constexpr int kSampleShift = 15 - kBits<Sample>;
constexpr int kRGBFraction = 5;
/// Fraction bits of a chroma sum; one less than luma's, since full-range chroma reaches one step too far.
template <class Sample>
constexpr int kChromaFraction = kSampleShift<Sample> - 1;

/// round(a · b / 2^15), in the form that compilers know as one instruction.
QV_INLINE std::int16_t multiply(std::int16_t a, std::int16_t b) {
    return std::int16_t((((std::int32_t(a) * b) >> 14) + 1) >> 1);
}

std::int16_t fixed(double value) {
    return std::int16_t(std::lround(value * 32768.0));
}

template <class Sample>
QV_INLINE void blendChromaRowsBody(const Sample* near, const Sample* far, std::uint16_t* line, int count) {
    for (int i = 0; i < count; ++i) line[i] = std::uint16_t(3 * near[i] + far[i]);
}

template <class Sample>
QV_INLINE void centerChromaBody(const Sample* row, std::int16_t* wide, int width) {
    constexpr int middle = 1 << (kBits<Sample> - 1);
    for (int i = 0; i < width; ++i) wide[i] = std::int16_t((row[i] - middle) * (1 << kSampleShift<Sample>));
}

template <class Sample>
QV_INLINE void toRGBABody(const Sample* luma, const std::int16_t* u, const std::int16_t* v,
                          const DecodeFactors& factors, std::uint8_t* rgba, int width) {
    const DecodeFactors f = factors;
    auto* out = reinterpret_cast<BytePair*>(rgba);
    const auto byte = [](int sum) {
        return std::clamp(std::int16_t(std::int16_t(sum) >> kRGBFraction), std::int16_t(0),
                          std::int16_t(255));
    };
    for (int i = 0; i < width; ++i) {
        const auto scaled = std::int16_t((luma[i] - f.lumaOffset) * (1 << kSampleShift<Sample>));
        const auto y = std::int16_t(multiply(scaled, f.luma) + (1 << (kRGBFraction - 1)));
        const std::int16_t red = byte(y + multiply(v[i], f.redFromV));
        const std::int16_t green = byte(y + multiply(u[i], f.greenFromU) + multiply(v[i], f.greenFromV));
        const std::int16_t blue = byte(y + multiply(u[i], f.blueFromU));
        out[2 * i] = BytePair(red | green << 8);
        out[2 * i + 1] = BytePair(blue | 0xff00);
    }
}

template <class Sample>
QV_INLINE void toLumaBody(const std::int16_t* red, const std::int16_t* green, const std::int16_t* blue,
                          const EncodeFactors& factors, Sample* luma, int width) {
    const std::int16_t r = factors.luma[0], g = factors.luma[1], b = factors.luma[2];
    constexpr int shift = kSampleShift<Sample>;
    const auto start = std::int16_t((factors.lumaOffset << shift) + (1 << (shift - 1)));
    for (int i = 0; i < width; ++i) {
        const auto sum =
            std::int16_t(start + multiply(std::int16_t(red[i] << 7), r) +
                         multiply(std::int16_t(green[i] << 7), g) + multiply(std::int16_t(blue[i] << 7), b));
        luma[i] = Sample(sum >> shift);
    }
}

template <class Sample>
QV_INLINE void toChromaBody(const std::int16_t* red, const std::int16_t* green, const std::int16_t* blue,
                            int log2Samples, const std::int16_t (&factors)[3], Sample* chroma, int count) {
    const std::int16_t r = factors[0], g = factors[1], b = factors[2];
    constexpr int fraction = kChromaFraction<Sample>;
    constexpr auto start = std::int16_t((1 << (kBits<Sample> - 1 + fraction)) + (1 << (fraction - 1)));
    constexpr auto maximum = std::int16_t((1 << kBits<Sample>)-1);
    const int shift = 7 - log2Samples;
    for (int i = 0; i < count; ++i) {
        const auto sum = std::int16_t(start + multiply(std::int16_t(red[i] << shift), r) +
                                      multiply(std::int16_t(green[i] << shift), g) +
                                      multiply(std::int16_t(blue[i] << shift), b));
        chroma[i] = Sample(std::min(std::int16_t(sum >> fraction), maximum));
    }
}

}  // namespace

DecodeFactors decodeFactors(const ColorDescription& color, int bitDepth) {
    const YUVCoefficients c = yuvCoefficients(color, bitDepth);
    const double fullCode = bitDepth == 8 ? 255.0 : 65535.0;
    // From sample steps times 2^(15 - depth) to RGB of 255 times 2^5.
    const double scale = 255.0 / fullCode * double(1 << kRGBFraction) / double(1 << (15 - bitDepth));
    return {std::int16_t(std::lround(double(c.offset[0]) * fullCode)),
            fixed(double(c.toRGB[0]) * scale),
            fixed(double(c.toRGB[2]) * scale),
            fixed(double(c.toRGB[4]) * scale),
            fixed(double(c.toRGB[5]) * scale),
            fixed(double(c.toRGB[7]) * scale)};
}

EncodeFactors encodeFactors(const ColorDescription& color, int bitDepth) {
    const YUVCoefficients c = yuvCoefficients(color, bitDepth);
    const double fullCode = bitDepth == 8 ? 255.0 : 65535.0;
    // From RGB of 255 times 2^7 to samples with their fraction bits.
    const double lumaScale = fullCode / 255.0 * double(1 << (15 - bitDepth)) / 128.0;
    const double chromaScale = lumaScale / 2.0;
    EncodeFactors result{};
    result.lumaOffset = std::int16_t(std::lround(double(c.offset[0]) * fullCode));
    const auto fill = [&](std::int16_t(&row)[3], std::size_t first, double scale) {
        double sum = 0.0;
        for (std::size_t i = 0; i < 3; ++i) {
            row[i] = fixed(double(c.fromRGB[first + i]) * scale);
            sum += double(c.fromRGB[first + i]) * scale;
        }
        row[1] = std::int16_t(fixed(sum) - row[0] - row[2]);
    };
    fill(result.luma, 0, lumaScale);
    fill(result.u, 3, chromaScale);
    fill(result.v, 6, chromaScale);
    return result;
}

QV_VECTORIZED void blendChromaRows(const std::uint8_t* near, const std::uint8_t* far, std::uint16_t* line,
                                   int count) {
    blendChromaRowsBody(near, far, line, count);
}

QV_VECTORIZED void blendChromaRows(const std::uint16_t* near, const std::uint16_t* far, std::uint16_t* line,
                                   int count) {
    blendChromaRowsBody(near, far, line, count);
}

QV_VECTORIZED void blendChromaPairs(const std::uint8_t* near, const std::uint8_t* far, std::uint16_t* u,
                                    std::uint16_t* v, int count) {
    auto* nearPairs = reinterpret_cast<const BytePair*>(near);
    auto* farPairs = reinterpret_cast<const BytePair*>(far);
    for (int i = 0; i < count; ++i) {
        u[i] = std::uint16_t(3 * (nearPairs[i] & 255) + (farPairs[i] & 255));
        v[i] = std::uint16_t(3 * (nearPairs[i] >> 8) + (farPairs[i] >> 8));
    }
}

QV_VECTORIZED void widenChroma(const std::uint16_t* line, std::int16_t* wide, int width, int bitDepth) {
    const int middle = 16 << (bitDepth - 1), shift = 11 - bitDepth;
    const auto scaled = [middle, shift](int sum) { return std::int16_t((sum - middle) * (1 << shift)); };
    const int count = (width + 1) / 2;
    wide[0] = scaled(4 * line[0]);
    // Between sample i and the next lie the second column of the former and the first of the latter.
    for (int i = 0; i + 1 < count; ++i) {
        wide[2 * i + 1] = scaled(3 * line[i] + line[i + 1]);
        wide[2 * i + 2] = scaled(line[i] + 3 * line[i + 1]);
    }
    // The last sample of an odd width belongs to one column and lies there.
    wide[width - 1] = scaled(4 * line[count - 1]);
}

QV_VECTORIZED void centerChroma(const std::uint8_t* row, std::int16_t* wide, int width) {
    centerChromaBody(row, wide, width);
}

QV_VECTORIZED void centerChroma(const std::uint16_t* row, std::int16_t* wide, int width) {
    centerChromaBody(row, wide, width);
}

QV_VECTORIZED void toRGBA(const std::uint8_t* luma, const std::int16_t* u, const std::int16_t* v,
                          const DecodeFactors& factors, std::uint8_t* rgba, int width) {
    toRGBABody(luma, u, v, factors, rgba, width);
}

QV_VECTORIZED void toRGBA(const std::uint16_t* luma, const std::int16_t* u, const std::int16_t* v,
                          const DecodeFactors& factors, std::uint8_t* rgba, int width) {
    toRGBABody(luma, u, v, factors, rgba, width);
}

QV_VECTORIZED void setAlpha(const std::uint8_t* alpha, std::uint8_t* rgba, int width) {
    for (int i = 0; i < width; ++i) rgba[4 * i + 3] = alpha[i];
}

QV_VECTORIZED void grayToRGBA(const std::uint8_t* gray, std::uint8_t* rgba, int width) {
    auto* out = reinterpret_cast<BytePair*>(rgba);
    for (int i = 0; i < width; ++i) {
        out[2 * i] = BytePair(gray[i] | gray[i] << 8);
        out[2 * i + 1] = BytePair(gray[i] | 0xff00);
    }
}

QV_VECTORIZED void splitRGBA(const std::uint8_t* rgba, std::int16_t* red, std::int16_t* green,
                             std::int16_t* blue, int width) {
    auto* in = reinterpret_cast<const BytePair*>(rgba);
    for (int i = 0; i < width; ++i) {
        red[i] = std::int16_t(in[2 * i] & 255);
        green[i] = std::int16_t(in[2 * i] >> 8);
        blue[i] = std::int16_t(in[2 * i + 1] & 255);
    }
}

QV_VECTORIZED void copyAlpha(const std::uint8_t* rgba, std::uint8_t* alpha, int width) {
    for (int i = 0; i < width; ++i) alpha[i] = rgba[4 * i + 3];
}

QV_VECTORIZED bool isOpaque(const std::uint8_t* rgba, int width) {
    std::uint8_t every = 255;
    for (int i = 0; i < width; ++i) every &= rgba[4 * i + 3];
    return every == 255;
}

QV_VECTORIZED void toLuma(const std::int16_t* red, const std::int16_t* green, const std::int16_t* blue,
                          const EncodeFactors& factors, std::uint8_t* luma, int width) {
    toLumaBody(red, green, blue, factors, luma, width);
}

QV_VECTORIZED void toLuma(const std::int16_t* red, const std::int16_t* green, const std::int16_t* blue,
                          const EncodeFactors& factors, std::uint16_t* luma, int width) {
    toLumaBody(red, green, blue, factors, luma, width);
}

QV_VECTORIZED void addRow(std::int16_t* first, const std::int16_t* second, int count) {
    for (int i = 0; i < count; ++i) first[i] = std::int16_t(first[i] + second[i]);
}

QV_VECTORIZED void addPairs(const std::int16_t* line, std::int16_t* sums, int width) {
    for (int i = 0; i < width / 2; ++i) sums[i] = std::int16_t(line[2 * i] + line[2 * i + 1]);
    if (width & 1) sums[width / 2] = std::int16_t(2 * line[width - 1]);
}

QV_VECTORIZED void toChroma(const std::int16_t* red, const std::int16_t* green, const std::int16_t* blue,
                            int log2Samples, const std::int16_t (&factors)[3], std::uint8_t* chroma,
                            int count) {
    toChromaBody(red, green, blue, log2Samples, factors, chroma, count);
}

QV_VECTORIZED void toChroma(const std::int16_t* red, const std::int16_t* green, const std::int16_t* blue,
                            int log2Samples, const std::int16_t (&factors)[3], std::uint16_t* chroma,
                            int count) {
    toChromaBody(red, green, blue, log2Samples, factors, chroma, count);
}

}  // namespace qv::rows
