#pragma once

#include <cstddef>
#include <memory>

#include "Platform/ImageGraph/Native/NativeCompiler.h"
#include "Platform/ImageGraph/Native/NativeKernel.h"
#include "Platform/ImageGraph/Planner.h"

namespace qv {

/// Alignment of the memory that the stages of an operation share.
inline constexpr std::size_t kOperationAlignment = 64;

/// A pass that is drawn by code of our own instead of a compiled kernel: blurs, copies, crops, resizes, in
/// integers, so that every instruction set and every division into bands gives the same bytes.
///
/// It is drawn in stages: all rows of one before the next begins. Within a stage, bands of rows may be drawn
/// at the same time, in any order; a band costs a few rows more than it has, so that it should have some 32.
class NativeOperation {
  public:
    virtual ~NativeOperation() = default;

    virtual int stageCount() const { return 1; }
    /// Rows that a stage draws; the last one's are the target's.
    virtual int rows(int stage) const = 0;
    /// Memory that the stages share until the last is done, aligned to kOperationAlignment; what it holds
    /// before does not count. Mostly none.
    virtual std::size_t scratchBytes() const { return 0; }
    /// Draws the rows [firstRow, endRow) of a stage. `inputs` are those of the pass by binding, 8-bit ones
    /// padded as NativeImage says. Thread-safe. Throws std::bad_alloc.
    virtual void draw(int stage, const NativeImage* inputs, const NativeImage& target, std::byte* scratch,
                      int firstRow, int endRow) const = 0;
};

/// The operation that draws a pass of the plan; nil when its function, formats or settings are none of ours
/// and its kernel draws it. What lies on top of the pass is not drawn: see NativeOverlays.
std::unique_ptr<const NativeOperation> nativeOperationFor(const RenderPlan& plan, const PlanPass& pass,
                                                          NativeTarget instructions);

}  // namespace qv
