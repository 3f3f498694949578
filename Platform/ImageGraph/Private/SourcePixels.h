#pragma once

#include <cstddef>
#include <cstdint>

#include "Platform/ImageGraph/Planner.h"

namespace qv {

/// Writes the pixels of a plan's source texture: premultiplied RGBA8, or one plane as it lies in its buffer.
void writeSourcePixels(const PlanTexture& texture, std::uint8_t* pixels, std::size_t rowBytes);

}  // namespace qv
