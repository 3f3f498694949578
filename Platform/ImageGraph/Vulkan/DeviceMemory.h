#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "Platform/ImageGraph/Vulkan/VulkanFunctions.h"

namespace qv {

class VulkanDevice;

/// A piece of device memory.
struct MemoryRange {
    struct Block;
    Block* block = nullptr;
    VkDeviceMemory memory = VK_NULL_HANDLE;
    VkDeviceSize offset = 0, size = 0;
    std::uint8_t* mapped = nullptr;  ///< null where the host cannot see it
};

/// Hands out device memory from large blocks, since devices limit the number of allocations. Best fit with
/// merging of free neighbours; what is larger than half a block gets one of its own. Thread-safe.
class DeviceMemory {
  public:
    explicit DeviceMemory(VulkanDevice& device);
    ~DeviceMemory();
    /// Gives all memory back to the device, whoever still has ranges of it.
    void releaseAll();

    /// Linear and optimal resources never share a block, so that their granularity cannot collide. Throws
    /// VulkanError.
    MemoryRange allocate(const VkMemoryRequirements& needs, VkMemoryPropertyFlags wanted, bool linear);
    void free(const MemoryRange& range) noexcept;

    /// Bytes taken from the device.
    std::uint64_t allocatedBytes() const;

  private:
    MemoryRange::Block& addBlock(VkDeviceSize size, std::uint32_t type, bool linear);

    VulkanDevice& device_;
    mutable std::mutex mutex_;
    std::vector<std::unique_ptr<MemoryRange::Block>> blocks_;
    std::uint64_t allocatedBytes_ = 0;
};

}  // namespace qv
