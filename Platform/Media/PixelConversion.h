#pragma once

#include <cstddef>
#include <cstdint>

#include "Platform/Media/PixelBuffer.h"

namespace qv {

/// Converts any 8-bit format to RGBA8 with premultiplied alpha, on the processor with SIMD. Chroma of
/// subsampled formats is interpolated. Large frames are split over the machine's cores. False for a format it
/// does not take.
bool convertToRGBA8(const PixelBuffer& source, std::uint8_t* rgba, std::size_t rowBytes);

/// Converts premultiplied RGBA8 into `destination`, in whichever 8-bit format, matrix and range that has.
/// Chroma is the mean of the samples it covers. A format without alpha takes the colour over black. False for
/// a format it does not take.
bool convertFromRGBA8(const std::uint8_t* rgba, std::size_t rowBytes, const PixelBuffer& destination);

}  // namespace qv
