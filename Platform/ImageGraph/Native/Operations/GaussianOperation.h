#pragma once

#include <memory>

#include "Platform/ImageGraph/Native/Operations/NativeOperation.h"

namespace qv {

/// A Gaussian of standard deviation `radius` (pixels) over 8-bit RGBA of the given size, whose border pixels
/// go on around it; see reducedGaussian. The radius must be one that `blursVisibly`.
std::unique_ptr<const NativeOperation> gaussianOperation(float radius, int width, int height,
                                                         NativeTarget instructions);

}  // namespace qv
