#include "Platform/ImageGraph/Vulkan/Frame.h"

#include <algorithm>

namespace qv {

namespace {
constexpr std::uint32_t kSetsPerPool = 64;
constexpr std::uint32_t kSamplersPerPool = 192;
}  // namespace

Frame::Frame(DeviceResources& resources) : resources_(resources) {
    try {
        create();
    } catch (...) {
        destroy();
        throw;
    }
}

Frame::~Frame() {
    if (running_) vkWaitForFences(resources_.device.handle(), 1, &fence_, VK_TRUE, UINT64_MAX);
    destroy();
}

void Frame::create() {
    const VkDevice device = resources_.device.handle();
    VkCommandPoolCreateInfo poolInfo{VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO};
    poolInfo.flags = VK_COMMAND_POOL_CREATE_TRANSIENT_BIT;
    poolInfo.queueFamilyIndex = resources_.device.queueFamily();
    commandPool_ = created(vkCreateCommandPool, device, poolInfo, "cannot create a command pool");
    VkCommandBufferAllocateInfo bufferInfo{VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO};
    bufferInfo.commandPool = commandPool_;
    bufferInfo.level = VK_COMMAND_BUFFER_LEVEL_PRIMARY;
    bufferInfo.commandBufferCount = 1;
    check(vkAllocateCommandBuffers(device, &bufferInfo, &commands_), "cannot create a command buffer");
    const VkFenceCreateInfo fenceInfo{VK_STRUCTURE_TYPE_FENCE_CREATE_INFO};
    fence_ = created(vkCreateFence, device, fenceInfo, "cannot create a fence");
    if (resources_.device.timestampPeriod() > 0) {
        VkQueryPoolCreateInfo queryInfo{VK_STRUCTURE_TYPE_QUERY_POOL_CREATE_INFO};
        queryInfo.queryType = VK_QUERY_TYPE_TIMESTAMP;
        queryInfo.queryCount = 2;
        queries_ = created(vkCreateQueryPool, device, queryInfo, "cannot create time stamps");
    }
}

void Frame::destroy() {
    const VkDevice device = resources_.device.handle();
    for (VkDescriptorPool pool : descriptorPools_) vkDestroyDescriptorPool(device, pool, nullptr);
    vkDestroyQueryPool(device, queries_, nullptr);
    vkDestroyFence(device, fence_, nullptr);
    vkDestroyCommandPool(device, commandPool_, nullptr);
}

VkCommandBuffer Frame::begin() {
    std::vector<std::shared_ptr<void>> released;  // without the lock
    {
        std::scoped_lock lock(mutex_);
        if (running_) released = finish();
    }
    const VkDevice device = resources_.device.handle();
    check(vkResetCommandPool(device, commandPool_, 0), "cannot reset commands");
    for (VkDescriptorPool pool : descriptorPools_) vkResetDescriptorPool(device, pool, 0);
    currentPool_ = 0;
    VkCommandBufferBeginInfo info{VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO};
    info.flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT;
    check(vkBeginCommandBuffer(commands_, &info), "cannot record commands");
    if (queries_) {
        vkCmdResetQueryPool(commands_, queries_, 0, 2);
        vkCmdWriteTimestamp(commands_, VK_PIPELINE_STAGE_TOP_OF_PIPE_BIT, queries_, 0);
    }
    return commands_;
}

namespace {

/// A host's semaphores as a submission takes them.
struct SemaphoreList {
    explicit SemaphoreList(const std::vector<MTIVulkanSemaphore>& semaphores) {
        for (const MTIVulkanSemaphore& semaphore : semaphores) {
            handles.push_back(semaphore.semaphore);
            values.push_back(semaphore.value);
        }
    }
    bool hasValues() const {
        return std::ranges::any_of(values, [](std::uint64_t value) { return value > 0; });
    }

    std::vector<VkSemaphore> handles;
    std::vector<std::uint64_t> values;
};

}  // namespace

void Frame::submit(std::uint64_t serial, const MTIVulkanSync& sync) {
    if (queries_) vkCmdWriteTimestamp(commands_, VK_PIPELINE_STAGE_BOTTOM_OF_PIPE_BIT, queries_, 1);
    check(vkEndCommandBuffer(commands_), "cannot record commands");
    VkSubmitInfo info{VK_STRUCTURE_TYPE_SUBMIT_INFO};
    info.commandBufferCount = 1;
    info.pCommandBuffers = &commands_;
    const SemaphoreList waits(sync.wait), signals(sync.signal);
    const std::vector<VkPipelineStageFlags> stages(waits.handles.size(), VK_PIPELINE_STAGE_ALL_COMMANDS_BIT);
    info.waitSemaphoreCount = std::uint32_t(waits.handles.size());
    info.pWaitSemaphores = waits.handles.data();
    info.pWaitDstStageMask = stages.data();
    info.signalSemaphoreCount = std::uint32_t(signals.handles.size());
    info.pSignalSemaphores = signals.handles.data();
    VkTimelineSemaphoreSubmitInfo values{VK_STRUCTURE_TYPE_TIMELINE_SEMAPHORE_SUBMIT_INFO};
    values.waitSemaphoreValueCount = info.waitSemaphoreCount;
    values.pWaitSemaphoreValues = waits.values.data();
    values.signalSemaphoreValueCount = info.signalSemaphoreCount;
    values.pSignalSemaphoreValues = signals.values.data();
    if (waits.hasValues() || signals.hasValues()) info.pNext = &values;
    check(vkResetFences(resources_.device.handle(), 1, &fence_), "cannot submit work");
    {
        std::scoped_lock lock(resources_.device.queueMutex());
        check(vkQueueSubmit(resources_.device.queue(), 1, &info, fence_), "cannot submit work");
    }
    layoutsBefore_.clear();
    std::scoped_lock lock(mutex_);
    running_ = serial;
}

void Frame::abandon() noexcept {
    for (; !layoutsBefore_.empty(); layoutsBefore_.pop_back())
        layoutsBefore_.back().texture->layout = layoutsBefore_.back().layout;
    keepAlive.clear();
}

void Frame::setLayout(Texture& texture, VkImageLayout layout) {
    layoutsBefore_.push_back({&texture, texture.layout});
    texture.layout = layout;
}

void Frame::wait(std::uint64_t serial) {
    std::vector<std::shared_ptr<void>> released;  // without the lock
    std::scoped_lock lock(mutex_);
    if (running_ == serial) released = finish();
    if (finished_ < serial) throw VulkanError("rendering failed");
}

double Frame::milliseconds(std::uint64_t serial) {
    std::scoped_lock lock(mutex_);
    return finished_ == serial ? finishedMilliseconds_ : 0;
}

std::vector<std::shared_ptr<void>> Frame::finish() {
    const VkDevice device = resources_.device.handle();
    check(vkWaitForFences(device, 1, &fence_, VK_TRUE, UINT64_MAX), "rendering failed");
    finished_ = std::exchange(running_, 0);
    std::uint64_t ticks[2] = {};
    const bool timed =
        queries_ && vkGetQueryPoolResults(device, queries_, 0, 2, sizeof ticks, ticks, sizeof ticks[0],
                                          VK_QUERY_RESULT_64_BIT) == VK_SUCCESS;
    finishedMilliseconds_ =
        timed ? double(ticks[1] - ticks[0]) * double(resources_.device.timestampPeriod()) * 1e-6 : 0;
    std::uint64_t known = resources_.completedSerial;
    while (known < finished_ && !resources_.completedSerial.compare_exchange_weak(known, finished_)) {
    }
    return std::exchange(keepAlive, {});
}

VkDescriptorSet Frame::allocateSet(VkDescriptorSetLayout layout) {
    const VkDevice device = resources_.device.handle();
    for (;; ++currentPool_) {
        const bool isNew = currentPool_ == descriptorPools_.size();
        if (isNew) {
            const VkDescriptorPoolSize size{VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER, kSamplersPerPool};
            VkDescriptorPoolCreateInfo info{VK_STRUCTURE_TYPE_DESCRIPTOR_POOL_CREATE_INFO};
            info.maxSets = kSetsPerPool;
            info.poolSizeCount = 1;
            info.pPoolSizes = &size;
            descriptorPools_.reserve(currentPool_ + 1);
            descriptorPools_.push_back(
                created(vkCreateDescriptorPool, device, info, "cannot create descriptors"));
        }
        VkDescriptorSetAllocateInfo info{VK_STRUCTURE_TYPE_DESCRIPTOR_SET_ALLOCATE_INFO};
        info.descriptorPool = descriptorPools_[currentPool_];
        info.descriptorSetCount = 1;
        info.pSetLayouts = &layout;
        VkDescriptorSet set = VK_NULL_HANDLE;
        const VkResult result = vkAllocateDescriptorSets(device, &info, &set);
        if (result == VK_SUCCESS) return set;
        const bool isFull = result == VK_ERROR_OUT_OF_POOL_MEMORY || result == VK_ERROR_FRAGMENTED_POOL;
        if (isNew || !isFull) check(result, "cannot create descriptors");
    }
}

}  // namespace qv
