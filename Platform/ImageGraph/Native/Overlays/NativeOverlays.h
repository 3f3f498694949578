#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Platform/ImageGraph/Native/NativeCompiler.h"
#include "Platform/ImageGraph/Native/NativeKernel.h"
#include "Platform/ImageGraph/Native/Overlays/NativePictures.h"
#include "Platform/ImageGraph/Planner.h"

namespace qv {

/// What is drawn on top of one pass of a frame, laid out and ready to be drawn by bands of rows: sprites and
/// lines, into 8-bit and float RGBA. Immutable.
class NativeOverlays {
  public:
    virtual ~NativeOverlays() = default;
    /// Draws over the rows [firstRow, endRow) of the target, which hold the pass's own colours. Thread-safe:
    /// bands may be drawn at the same time, and a band as soon as its pass has drawn it. Throws
    /// std::bad_alloc.
    virtual void draw(const NativeImage& target, int firstRow, int endRow) const = 0;
};

/// Lays out the overlays of a pass whose output is `output`. Nil with one line in `error` when a stage is
/// missing, or one that only a graphics device can run. Called by one thread at a time, because of
/// `pictures`.
std::unique_ptr<const NativeOverlays> layOutNativeOverlays(const PlanPass& pass, const PlanTexture& output,
                                                           NativePictures& pictures,
                                                           NativeTarget instructions, std::string* error);

}  // namespace qv
