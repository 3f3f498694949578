#include "Platform/ImageGraph/Vulkan/DeviceMemory.h"

#include <algorithm>
#include <optional>

#include "Platform/ImageGraph/Vulkan/VulkanDevice.h"

namespace qv {

struct MemoryRange::Block {
    VkDeviceMemory memory = VK_NULL_HANDLE;
    VkDeviceSize size = 0;
    std::uint32_t type = 0;
    bool linear = false;
    std::uint8_t* mapped = nullptr;
    std::map<VkDeviceSize, VkDeviceSize> free;  ///< offset to size, no two adjacent

    bool isEmpty() const { return free.size() == 1 && free.begin()->second == size; }

    /// Where `bytes` fit with the least left over.
    std::optional<VkDeviceSize> bestFit(VkDeviceSize bytes, VkDeviceSize alignment) const {
        std::optional<VkDeviceSize> best;
        VkDeviceSize bestSize = 0;
        for (const auto& [offset, length] : free) {
            const VkDeviceSize aligned = (offset + alignment - 1) / alignment * alignment;
            if (aligned + bytes > offset + length) continue;
            if (!best || length < bestSize) best = aligned, bestSize = length;
        }
        return best;
    }

    void take(VkDeviceSize offset, VkDeviceSize bytes) {
        const auto hole = std::prev(free.upper_bound(offset));
        const VkDeviceSize start = hole->first, end = hole->first + hole->second;
        if (offset + bytes < end) free.emplace(offset + bytes, end - offset - bytes);
        if (start < offset)
            hole->second = offset - start;
        else
            free.erase(hole);
    }

    /// When the host's memory has run out, the range may be lost until the block goes.
    void give(VkDeviceSize offset, VkDeviceSize bytes) noexcept {
        const auto next = free.lower_bound(offset);
        if (next != free.begin()) {
            const auto previous = std::prev(next);
            if (previous->first + previous->second == offset) {
                offset = previous->first;
                bytes += previous->second;
                free.erase(previous);
            }
        }
        if (next != free.end() && next->first == offset + bytes) {
            bytes += next->second;
            free.erase(next);
        }
        try {
            free.emplace(offset, bytes);
        } catch (const std::bad_alloc&) {
        }
    }
};

namespace {
constexpr VkDeviceSize kBlockBytes = VkDeviceSize(64) << 20;
}  // namespace

DeviceMemory::DeviceMemory(VulkanDevice& device) : device_(device) {}

DeviceMemory::~DeviceMemory() {
    releaseAll();
}

void DeviceMemory::releaseAll() {
    std::scoped_lock lock(mutex_);
    for (const auto& block : blocks_) vkFreeMemory(device_.handle(), block->memory, nullptr);
    blocks_.clear();
    allocatedBytes_ = 0;
}

MemoryRange DeviceMemory::allocate(const VkMemoryRequirements& needs, VkMemoryPropertyFlags wanted,
                                   bool linear) {
    const std::uint32_t type = device_.findMemoryType(needs.memoryTypeBits, wanted);
    if (type == UINT32_MAX) throw VulkanError("the device has no memory of the needed kind");
    std::scoped_lock lock(mutex_);
    MemoryRange::Block* block = nullptr;
    std::optional<VkDeviceSize> offset;
    for (const auto& candidate : blocks_) {
        if (candidate->type != type || candidate->linear != linear) continue;
        if ((offset = candidate->bestFit(needs.size, needs.alignment))) {
            block = candidate.get();
            break;
        }
    }
    if (!block) {
        block = &addBlock(needs.size > kBlockBytes / 2 ? needs.size : kBlockBytes, type, linear);
        offset = 0;
    }
    block->take(*offset, needs.size);
    return {block, block->memory, *offset, needs.size, block->mapped ? block->mapped + *offset : nullptr};
}

void DeviceMemory::free(const MemoryRange& range) noexcept {
    if (!range.block) return;
    std::scoped_lock lock(mutex_);
    range.block->give(range.offset, range.size);
    if (!range.block->isEmpty()) return;
    // One empty block of a kind is kept, so that a frame that needs it again does not allocate.
    const bool spare = std::any_of(blocks_.begin(), blocks_.end(), [&](const auto& other) {
        return other.get() != range.block && other->type == range.block->type &&
               other->linear == range.block->linear && other->isEmpty();
    });
    if (!spare && range.block->size <= kBlockBytes) return;
    vkFreeMemory(device_.handle(), range.block->memory, nullptr);
    allocatedBytes_ -= range.block->size;
    std::erase_if(blocks_, [&](const auto& block) { return block.get() == range.block; });
}

std::uint64_t DeviceMemory::allocatedBytes() const {
    std::scoped_lock lock(mutex_);
    return allocatedBytes_;
}

MemoryRange::Block& DeviceMemory::addBlock(VkDeviceSize size, std::uint32_t type, bool linear) {
    auto block = std::make_unique<MemoryRange::Block>();
    block->size = size;
    block->type = type;
    block->linear = linear;
    block->free.emplace(0, size);
    blocks_.reserve(blocks_.size() + 1);
    VkMemoryAllocateInfo info{VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO};
    info.allocationSize = size;
    info.memoryTypeIndex = type;
    block->memory = created(vkAllocateMemory, device_.handle(), info, "cannot allocate texture memory");
    if (device_.memoryTypeFlags(type) & VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT) {
        void* mapped = nullptr;
        const VkResult result = vkMapMemory(device_.handle(), block->memory, 0, VK_WHOLE_SIZE, 0, &mapped);
        if (result < 0) {
            vkFreeMemory(device_.handle(), block->memory, nullptr);
            check(result, "cannot map device memory");
        }
        block->mapped = static_cast<std::uint8_t*>(mapped);
    }
    allocatedBytes_ += size;
    return *blocks_.emplace_back(std::move(block));
}

}  // namespace qv
