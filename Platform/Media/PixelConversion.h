#pragma once

#include <cstddef>
#include <cstdint>

#include "Platform/Media/PixelBuffer.h"

namespace qv {

/// Converts a frame of any format to RGBA8 with premultiplied alpha, on the processor with SIMD. Chroma of
/// subsampled formats is interpolated; its samples lie in the middle of the pixels they cover. Each value is
/// within 0.65 of the exact one before rounding. Large frames are split over the machine's cores. False for
/// nil or too short rows.
bool convertToRGBA8(const PixelBuffer& source, std::uint8_t* rgba, std::size_t rowBytes);

/// Converts premultiplied RGBA8 into `destination`, in whichever format, matrix and range that has. Chroma is
/// the mean of the pixels it covers. A format without alpha takes the colour over black. As exact, as
/// parallel and as refusing as the other way.
bool convertFromRGBA8(const std::uint8_t* rgba, std::size_t rowBytes, const PixelBuffer& destination);

/// The same for rows [firstRow, endRow), on the calling thread alone; `firstRow` is even. `rgba` is the
/// frame's first row all the same.
bool convertRowsToRGBA8(const PixelBuffer& source, std::uint8_t* rgba, std::size_t rowBytes, int firstRow,
                        int endRow);
bool convertRowsFromRGBA8(const std::uint8_t* rgba, std::size_t rowBytes, const PixelBuffer& destination,
                          int firstRow, int endRow);

}  // namespace qv
