#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "Platform/ImageGraph/Native/Operations/NativeOperation.h"

namespace qv {

/// A Gaussian of standard deviation `radius` (pixels) over 8-bit RGBA of the given size, whose border pixels
/// go on around it; see reducedGaussian. The radius must be one that `blursVisibly`.
std::unique_ptr<const NativeOperation> gaussianOperation(float radius, int width, int height,
                                                         NativeTarget instructions);

/// Rows [firstRow, endRow) of the same over a gray8 picture, written as RGBA8 where they lie in `pixels`.
/// Only for a radius for which reducedGaussian reduces nothing. Throws std::bad_alloc.
void blurGray(const PixelBuffer& gray, float radius, int firstRow, int endRow, std::uint8_t* pixels,
              std::size_t rowBytes);

}  // namespace qv
