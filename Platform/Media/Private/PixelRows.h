#pragma once

#include <cstddef>
#include <cstdint>

#include "Platform/Media/PixelBuffer.h"

/// Rows of samples, in loops that the compiler turns into SIMD code. Sums are kept in 16-bit lanes with the
/// fraction bits that fit: a result lies within 0.65 of the exact value. Samples of 10 bits are 16-bit words.
namespace qv::rows {

/// Factors of 2^-15 for samples to RGB: luma and chroma come in scaled to 2^7 per 8-bit step, RGB leaves its
/// sum with 5 fraction bits.
struct DecodeFactors {
    std::int16_t lumaOffset;  ///< code of black
    std::int16_t luma, redFromV, greenFromU, greenFromV, blueFromU;
};
DecodeFactors decodeFactors(const ColorDescription& color, int bitDepth);

/// Factors of 2^-15 for RGB to samples. Each set's sum is exact, so grey stays grey.
struct EncodeFactors {
    std::int16_t lumaOffset;  ///< code of black
    std::int16_t luma[3], u[3], v[3];
};
EncodeFactors encodeFactors(const ColorDescription& color, int bitDepth);

// Samples to RGB. Chroma is brought to lines of full width first, as (sample - middle) times 2^7 per 8-bit
// step.

/// line[i] = 3 near[i] + far[i]
void blendChromaRows(const std::uint8_t* near, const std::uint8_t* far, std::uint16_t* line, int count);
void blendChromaRows(const std::uint16_t* near, const std::uint16_t* far, std::uint16_t* line, int count);
/// The same of both, for chroma that is stored in pairs.
void blendChromaPairs(const std::uint8_t* near, const std::uint8_t* far, std::uint16_t* u, std::uint16_t* v,
                      int count);
/// Doubles a line of such sums across, interpolating 3 to 1 between neighbours.
void widenChroma(const std::uint16_t* line, std::int16_t* wide, int width, int bitDepth);
/// For chroma that has the full width.
void centerChroma(const std::uint8_t* row, std::int16_t* wide, int width);
void centerChroma(const std::uint16_t* row, std::int16_t* wide, int width);

/// Opaque.
void toRGBA(const std::uint8_t* luma, const std::int16_t* u, const std::int16_t* v,
            const DecodeFactors& factors, std::uint8_t* rgba, int width);
void toRGBA(const std::uint16_t* luma, const std::int16_t* u, const std::int16_t* v,
            const DecodeFactors& factors, std::uint8_t* rgba, int width);
void setAlpha(const std::uint8_t* alpha, std::uint8_t* rgba, int width);
void grayToRGBA(const std::uint8_t* gray, std::uint8_t* rgba, int width);

// RGB to samples, from one line per channel.

void splitRGBA(const std::uint8_t* rgba, std::int16_t* red, std::int16_t* green, std::int16_t* blue,
               int width);
void copyAlpha(const std::uint8_t* rgba, std::uint8_t* alpha, int width);
bool isOpaque(const std::uint8_t* rgba, int width);
void toLuma(const std::int16_t* red, const std::int16_t* green, const std::int16_t* blue,
            const EncodeFactors& factors, std::uint8_t* luma, int width);
void toLuma(const std::int16_t* red, const std::int16_t* green, const std::int16_t* blue,
            const EncodeFactors& factors, std::uint16_t* luma, int width);
/// first[i] += second[i]
void addRow(std::int16_t* first, const std::int16_t* second, int count);
/// Sums of neighbours; the last sample of an odd width counts twice.
void addPairs(const std::int16_t* line, std::int16_t* sums, int width);
/// From sums of 2^log2Samples pixels.
void toChroma(const std::int16_t* red, const std::int16_t* green, const std::int16_t* blue, int log2Samples,
              const std::int16_t (&factors)[3], std::uint8_t* chroma, int count);
void toChroma(const std::int16_t* red, const std::int16_t* green, const std::int16_t* blue, int log2Samples,
              const std::int16_t (&factors)[3], std::uint16_t* chroma, int count);

}  // namespace qv::rows
