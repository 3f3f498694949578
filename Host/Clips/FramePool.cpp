#include "Host/Clips/FramePool.h"

#include <utility>

namespace qv::host {

PixelBuffer FramePool::take() {
    PixelBuffer memory;
    {
        std::scoped_lock lock(idle_->mutex);
        if (!idle_->buffers.empty()) {
            memory = std::move(idle_->buffers.back());
            idle_->buffers.pop_back();
        }
    }
    if (!memory) memory = PixelBuffer::create(format_, width_, height_, color_);
    if (!memory) return {};
    std::array<PixelBuffer::Plane, 4> planes{};
    for (int i = 0; i < PixelBuffer::planeCount(format_); ++i) planes[std::size_t(i)] = memory.plane(i);
    // The last handle to go gives the memory back instead of freeing it.
    const auto giveBack = [idle = idle_](PixelBuffer* buffer) {
        std::scoped_lock lock(idle->mutex);
        idle->buffers.push_back(std::move(*buffer));
        delete buffer;
    };
    const std::shared_ptr<PixelBuffer> owner(new PixelBuffer(std::move(memory)), giveBack);
    return PixelBuffer::wrap(format_, width_, height_, color_, planes, owner);
}

}  // namespace qv::host
