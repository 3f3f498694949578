#pragma once

#include <algorithm>
#include <list>
#include <memory>
#include <mutex>

#include "Platform/ImageGraph/Vulkan/Texture.h"

namespace qv {

/// Host-visible buffers for reuse. A buffer comes back when its last holder lets go; whoever lets the device
/// use one holds it until the device is done. Idle ones above the budget are freed, the longest unused first.
class HostBufferPool : public std::enable_shared_from_this<HostBufferPool> {
  public:
    HostBufferPool(std::shared_ptr<DeviceResources> resources, std::uint64_t budgetBytes)
        : resources_(std::move(resources)), budgetBytes_(budgetBytes) {}

    /// At least `size` bytes.
    std::shared_ptr<HostBuffer> acquire(VkDeviceSize size, bool readBack = false) {
        size = (size + kGranularity - 1) / kGranularity * kGranularity;
        List one;
        {
            std::scoped_lock lock(mutex_);
            const auto found = std::find_if(idle_.begin(), idle_.end(), [&](const Entry& entry) {
                return entry.buffer->size() == size && entry.readBack == readBack;
            });
            if (found != idle_.end()) {
                one.splice(one.end(), idle_, found);
                idleBytes_ -= size;
            }
        }
        if (one.empty()) {
            one.push_back({std::make_unique<HostBuffer>(*resources_, size,
                                                        VK_BUFFER_USAGE_TRANSFER_SRC_BIT |
                                                            VK_BUFFER_USAGE_TRANSFER_DST_BIT |
                                                            VK_BUFFER_USAGE_VERTEX_BUFFER_BIT,
                                                        readBack),
                           readBack});
        }
        HostBuffer* const buffer = one.front().buffer.get();
        return {buffer, [pool = shared_from_this(), one = std::move(one)](HostBuffer*) mutable {
                    pool->giveBack(one);
                }};
    }

  private:
    static constexpr VkDeviceSize kGranularity = 4096;

    struct Entry {
        std::unique_ptr<HostBuffer> buffer;
        bool readBack;
    };
    /// A buffer keeps its place in a list while it is out, so that coming back takes no memory.
    using List = std::list<Entry>;

    void giveBack(List& one) noexcept {
        std::scoped_lock lock(mutex_);
        idleBytes_ += one.front().buffer->size();
        idle_.splice(idle_.begin(), one);
        while (idleBytes_ > budgetBytes_) {
            idleBytes_ -= idle_.back().buffer->size();
            idle_.pop_back();
        }
    }

    std::shared_ptr<DeviceResources> resources_;
    const std::uint64_t budgetBytes_;
    std::mutex mutex_;
    List idle_;  ///< most recently returned first
    std::uint64_t idleBytes_ = 0;
};

}  // namespace qv
