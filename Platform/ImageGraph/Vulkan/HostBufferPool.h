#pragma once

#include <algorithm>
#include <list>
#include <memory>
#include <mutex>

#include "Platform/ImageGraph/Vulkan/Texture.h"

namespace qv {

/// Host-visible buffers for reuse. A buffer comes back when its last holder lets go; whoever lets the device
/// use one holds it until the device is done.
class HostBufferPool : public std::enable_shared_from_this<HostBufferPool> {
  public:
    explicit HostBufferPool(std::shared_ptr<DeviceResources> resources) : resources_(std::move(resources)) {}

    /// At least `size` bytes.
    std::shared_ptr<HostBuffer> acquire(VkDeviceSize size, bool readBack = false) {
        size = (size + kGranularity - 1) / kGranularity * kGranularity;
        auto& idle = readBack ? idleReadBacks_ : idle_;
        std::unique_ptr<HostBuffer> buffer;
        {
            std::scoped_lock lock(mutex_);
            const auto found =
                std::find_if(idle.begin(), idle.end(), [&](auto& b) { return b->size() == size; });
            if (found != idle.end()) {
                buffer = std::move(*found);
                idle.erase(found);
            }
        }
        if (!buffer) {
            buffer = std::make_unique<HostBuffer>(*resources_, size,
                                                  VK_BUFFER_USAGE_TRANSFER_SRC_BIT |
                                                      VK_BUFFER_USAGE_TRANSFER_DST_BIT |
                                                      VK_BUFFER_USAGE_VERTEX_BUFFER_BIT,
                                                  readBack);
        }
        return {buffer.release(), [pool = shared_from_this(), &idle](HostBuffer* returned) {
                    std::scoped_lock lock(pool->mutex_);
                    idle.emplace_front(returned);
                    if (idle.size() > kMostIdle) idle.pop_back();
                }};
    }

  private:
    static constexpr VkDeviceSize kGranularity = 4096;
    static constexpr std::size_t kMostIdle = 12;

    std::shared_ptr<DeviceResources> resources_;
    std::mutex mutex_;
    std::list<std::unique_ptr<HostBuffer>> idle_, idleReadBacks_;
};

}  // namespace qv
