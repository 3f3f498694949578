#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "Platform/Foundation/WorkerPool.h"
#include "Platform/ImageGraph/Planner.h"

namespace qv {

/// Writes the pixels of a plan's source texture: premultiplied RGBA8, or one plane as it lies in its buffer.
/// A gray picture that is blurred is one, too.
/// With the help of the process's workers, as far as the limit lets them.
void writeSourcePixels(const PlanTexture& texture, std::uint8_t* pixels, std::size_t rowBytes,
                       std::shared_ptr<WorkLimit> limit = nullptr);

}  // namespace qv
