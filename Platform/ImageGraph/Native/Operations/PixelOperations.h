#pragma once

#include <memory>

#include "Platform/ImageGraph/Native/Operations/NativeOperation.h"

namespace qv {

// All but the last give a picture of `height` rows, as high as their target.

/// The part of the input that begins at its pixel (x, y), which may lie outside; transparent there. `bytes`
/// of a texel, in any format.
std::unique_ptr<const NativeOperation> cropOperation(int bytes, int x, int y, int height);
/// 8-bit RGBA with alpha 255.
std::unique_ptr<const NativeOperation> opaqueOperation(int height, NativeTarget instructions);
/// 8-bit RGBA, colours multiplied by alpha.
std::unique_ptr<const NativeOperation> premultiplyOperation(int height, NativeTarget instructions);
/// The alpha of 8-bit RGBA as one channel.
std::unique_ptr<const NativeOperation> alphaOperation(int height, NativeTarget instructions);
/// 8-bit RGBA stretched to another size, bilinear; border pixels go on.
std::unique_ptr<const NativeOperation> resizeOperation(int fromWidth, int fromHeight, int toWidth,
                                                       int toHeight, NativeTarget instructions);

}  // namespace qv
