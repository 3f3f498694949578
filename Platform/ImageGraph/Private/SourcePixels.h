#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "Platform/Foundation/WorkerPool.h"
#include "Platform/ImageGraph/Planner.h"

namespace qv {

/// Whether the texture's source is kept in planes that are converted when it is taken in.
bool isConverted(const PlanTexture& texture);

/// Writes rows [firstRow, endRow) of a plan's source texture, as the pixels below; `firstRow` is even.
/// `pixels` are the texture's first row all the same. The texture's node must be alive. Throws
/// std::bad_alloc.
void writeSourceRows(const PlanTexture& texture, std::uint8_t* pixels, std::size_t rowBytes, int firstRow,
                     int endRow);

/// Writes the pixels of a plan's source texture: premultiplied RGBA8, or one plane as it lies in its buffer.
/// A gray picture that is blurred is one, too.
/// With the help of the process's workers, as far as the limit lets them.
void writeSourcePixels(const PlanTexture& texture, std::uint8_t* pixels, std::size_t rowBytes,
                       std::shared_ptr<WorkLimit> limit = nullptr);

}  // namespace qv
