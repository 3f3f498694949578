#pragma once

#include <cstdint>
#include <span>

#include "Platform/Media/Private/PixelRows.h"

/// Rows of 8-bit samples whose chroma is halved across, converted in one go with vectors of one instruction
/// set. Each value is what the loops of PixelRows give, to the bit.
namespace qv::rows {

/// Samples that a line of chroma has before the first and behind the last one, which repeat these.
inline constexpr int kLineMargin = 32;

struct BlockFunctions {
    /// Opaque RGBA of a row of luma and of lines of chroma that blendChromaRows() has made.
    void (*toRGBA)(const std::uint8_t* luma, const std::uint16_t* u, const std::uint16_t* v,
                   const DecodeFactors& factors, std::uint8_t* rgba, int width);
    /// Luma of two rows and the chroma that they share, or, where `lower` is null, luma and chroma of a row.
    void (*fromRGBA)(const std::uint8_t* upper, const std::uint8_t* lower, const EncodeFactors& factors,
                     std::uint8_t* upperLuma, std::uint8_t* lowerLuma, std::uint8_t* u, std::uint8_t* v,
                     int width);
};

/// Those that this machine has, the best first; none where the loops are all there is.
std::span<const BlockFunctions> blockFunctions();

}  // namespace qv::rows
