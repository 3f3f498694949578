#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Platform/ImageGraph/Vulkan/Texture.h"
#include "Platform/ImageGraph/Vulkan/VulkanFunctions.h"

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
    /// Gives up what was recorded since `begin`: it never runs.
    void abandon() noexcept;
    /// Waits until submission `serial` of this frame has run; at once when the frame has moved on. Throws
    /// VulkanError as long as it has not.
    void wait(std::uint64_t serial);

    VkDescriptorSet allocateSet(VkDescriptorSetLayout layout);
    /// Notes the layout that a texture has after what has been recorded.
    void setLayout(Texture& texture, VkImageLayout layout);
    /// Milliseconds that the device spent on submission `serial`; 0 when unknown.
    double milliseconds(std::uint64_t serial);

    /// Held until the frame has run.
    std::vector<std::shared_ptr<void>> keepAlive;

  private:
    /// A layout that a texture goes back to when the frame is given up.
    struct LayoutBefore {
        Texture* texture;
        VkImageLayout layout;
    };

    void create();
    void destroy();
    /// Waits for what runs, under the lock, and returns what was kept alive for it.
    std::vector<std::shared_ptr<void>> finish();

    DeviceResources& resources_;
    VkCommandPool commandPool_ = VK_NULL_HANDLE;
    VkCommandBuffer commands_ = VK_NULL_HANDLE;
    VkFence fence_ = VK_NULL_HANDLE;
    VkQueryPool queries_ = VK_NULL_HANDLE;
    std::vector<VkDescriptorPool> descriptorPools_;
    std::size_t currentPool_ = 0;
    std::vector<LayoutBefore> layoutsBefore_;

    std::mutex mutex_;                          ///< guards what follows, against waiters
    std::uint64_t running_ = 0, finished_ = 0;  ///< serials; a frame runs one at a time, in ascending order
    double finishedMilliseconds_ = 0;
};

}  // namespace qv
