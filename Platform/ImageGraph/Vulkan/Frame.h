#pragma once

#include <vulkan/vulkan.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Platform/ImageGraph/Vulkan/Texture.h"

namespace qv {

/// What one render in flight needs: commands, descriptors, a fence, and everything to keep alive until it has
/// run. Recorded by the render thread; waited for by any thread.
class Frame {
  public:
    explicit Frame(DeviceResources& resources);
    ~Frame();
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    /// Waits for what the frame ran before and opens its command buffer. Throws VulkanError.
    VkCommandBuffer begin();
    /// Ends the command buffer and submits it as `serial`. Throws VulkanError.
    void submit(std::uint64_t serial, const MTIVulkanSync& sync);
    /// Gives up what was recorded since `begin`.
    void abandon();
    /// Waits until submission `serial` of this frame has run; at once when the frame has moved on. Throws
    /// VulkanError.
    void wait(std::uint64_t serial);

    VkDescriptorSet allocateSet(VkDescriptorSetLayout layout);
    /// Milliseconds that the device spent on submission `serial`; 0 when unknown.
    double milliseconds(std::uint64_t serial);

    std::vector<std::shared_ptr<void>> keepAlive;

  private:
    void finish();

    DeviceResources& resources_;
    VkCommandPool commandPool_ = VK_NULL_HANDLE;
    VkCommandBuffer commands_ = VK_NULL_HANDLE;
    VkFence fence_ = VK_NULL_HANDLE;
    VkQueryPool queries_ = VK_NULL_HANDLE;
    std::vector<VkDescriptorPool> descriptorPools_;
    std::size_t currentPool_ = 0;

    std::mutex mutex_;  ///< guards what follows, against waiters
    std::uint64_t running_ = 0, finished_ = 0;
    double finishedMilliseconds_ = 0;
};

}  // namespace qv
