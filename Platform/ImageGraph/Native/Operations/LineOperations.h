#pragma once

#include <memory>

#include "Platform/ImageGraph/Native/Operations/NativeOperation.h"

namespace qv {

/// A tap of a line and the one behind it, as MTILineGather and MTILineBox place them; pixels, y down.
struct LineStep {
    double x, y;
};

/// What MTILineGather is told, of 8-bit RGBA.
struct LineGathering {
    int reduction;
    bool lightsOnly, isOnGrid, isTurned;
    LineStep tap, origin, column, row;
    int width, height;  ///< of the target
};

/// Nil for lines that do not step pixel by pixel along an axis, or gather more than line functions do.
std::unique_ptr<const NativeOperation> lineGatherOperation(const LineGathering& gathering,
                                                           NativeTarget instructions);

/// What MTILineBox draws over 8-bit RGBA of all tones; nil for steps that are longer than to the next pixel.
std::unique_ptr<const NativeOperation> lineBoxOperation(const LineStep& step, float steps, int height,
                                                        NativeTarget instructions);

}  // namespace qv
