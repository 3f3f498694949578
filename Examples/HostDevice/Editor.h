#pragma once

#include <vulkan/vulkan.h>

#include <cstdint>
#include <functional>

/// The editor's side: an instance, a device with one queue, images and commands. Error checks are left out
/// for brevity, and so is freeing what is made.
struct Editor {
    VkInstance instance{};
    VkPhysicalDevice physicalDevice{};
    VkDevice device{};
    VkQueue queue{};
    VkCommandPool pool{};

    explicit Editor(VkInstanceCreateInfo instanceInfo = {VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO}) {
        VkApplicationInfo application{VK_STRUCTURE_TYPE_APPLICATION_INFO};
        application.apiVersion = VK_API_VERSION_1_1;
        instanceInfo.pApplicationInfo = &application;
        if (vkCreateInstance(&instanceInfo, nullptr, &instance) != VK_SUCCESS) return;
        std::uint32_t one = 1;
        vkEnumeratePhysicalDevices(instance, &one, &physicalDevice);
        if (!physicalDevice) return;
        const float priority = 1;
        VkDeviceQueueCreateInfo queueInfo{VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO};
        queueInfo.queueCount = 1;
        queueInfo.pQueuePriorities = &priority;
        VkDeviceCreateInfo deviceInfo{VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO};
        deviceInfo.queueCreateInfoCount = 1;
        deviceInfo.pQueueCreateInfos = &queueInfo;
        vkCreateDevice(physicalDevice, &deviceInfo, nullptr, &device);
        vkGetDeviceQueue(device, 0, 0, &queue);
        const VkCommandPoolCreateInfo poolInfo{VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO};
        vkCreateCommandPool(device, &poolInfo, nullptr, &pool);
    }

    VkDeviceMemory allocate(const VkMemoryRequirements& needs, VkMemoryPropertyFlags wanted) const {
        VkPhysicalDeviceMemoryProperties memory;
        vkGetPhysicalDeviceMemoryProperties(physicalDevice, &memory);
        VkMemoryAllocateInfo info{VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO};
        info.allocationSize = needs.size;
        while (!(needs.memoryTypeBits >> info.memoryTypeIndex & 1u) ||
               (memory.memoryTypes[info.memoryTypeIndex].propertyFlags & wanted) != wanted) {
            ++info.memoryTypeIndex;
        }
        VkDeviceMemory allocated{};
        vkAllocateMemory(device, &info, nullptr, &allocated);
        return allocated;
    }

    struct Image {
        VkImage image{};
        VkDeviceMemory memory{};
    };
    Image makeImage(std::uint32_t width, std::uint32_t height, VkFormat format,
                    VkImageUsageFlags usage) const {
        VkImageCreateInfo info{VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO};
        info.imageType = VK_IMAGE_TYPE_2D;
        info.format = format;
        info.extent = {width, height, 1};
        info.mipLevels = info.arrayLayers = 1;
        info.samples = VK_SAMPLE_COUNT_1_BIT;
        info.usage = usage;
        Image made;
        vkCreateImage(device, &info, nullptr, &made.image);
        VkMemoryRequirements needs;
        vkGetImageMemoryRequirements(device, made.image, &needs);
        made.memory = allocate(needs, VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT);
        vkBindImageMemory(device, made.image, made.memory, 0);
        return made;
    }

    /// Memory that both sides see, for pixels on their way to or from an image.
    struct Buffer {
        VkBuffer buffer{};
        VkDeviceMemory memory{};
        std::uint8_t* bytes = nullptr;
    };
    Buffer makeBuffer(VkDeviceSize size) const {
        VkBufferCreateInfo info{VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO};
        info.size = size;
        info.usage = VK_BUFFER_USAGE_TRANSFER_SRC_BIT | VK_BUFFER_USAGE_TRANSFER_DST_BIT;
        Buffer made;
        vkCreateBuffer(device, &info, nullptr, &made.buffer);
        VkMemoryRequirements needs;
        vkGetBufferMemoryRequirements(device, made.buffer, &needs);
        made.memory =
            allocate(needs, VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT);
        vkBindBufferMemory(device, made.buffer, made.memory, 0);
        void* mapped = nullptr;
        vkMapMemory(device, made.memory, 0, VK_WHOLE_SIZE, 0, &mapped);
        made.bytes = static_cast<std::uint8_t*>(mapped);
        return made;
    }

    VkSemaphore makeSemaphore() const {
        const VkSemaphoreCreateInfo info{VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO};
        VkSemaphore semaphore{};
        vkCreateSemaphore(device, &info, nullptr, &semaphore);
        return semaphore;
    }

    /// Records and submits; does not wait for the device.
    void submit(VkSemaphore wait, VkSemaphore signal,
                const std::function<void(VkCommandBuffer)>& record) const {
        VkCommandBufferAllocateInfo allocation{VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO};
        allocation.commandPool = pool;
        allocation.commandBufferCount = 1;
        VkCommandBuffer commands{};
        vkAllocateCommandBuffers(device, &allocation, &commands);
        const VkCommandBufferBeginInfo begin{VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO};
        vkBeginCommandBuffer(commands, &begin);
        record(commands);
        vkEndCommandBuffer(commands);
        const VkPipelineStageFlags stage = VK_PIPELINE_STAGE_ALL_COMMANDS_BIT;
        VkSubmitInfo info{VK_STRUCTURE_TYPE_SUBMIT_INFO};
        info.commandBufferCount = 1;
        info.pCommandBuffers = &commands;
        info.waitSemaphoreCount = wait ? 1 : 0;
        info.pWaitSemaphores = &wait;
        info.pWaitDstStageMask = &stage;
        info.signalSemaphoreCount = signal ? 1 : 0;
        info.pSignalSemaphores = &signal;
        vkQueueSubmit(queue, 1, &info, VK_NULL_HANDLE);
    }
};

inline void changeLayout(VkCommandBuffer commands, VkImage image, VkImageLayout from, VkImageLayout to) {
    VkImageMemoryBarrier info{VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER};
    info.srcAccessMask = VK_ACCESS_MEMORY_WRITE_BIT;
    info.dstAccessMask = VK_ACCESS_MEMORY_READ_BIT | VK_ACCESS_MEMORY_WRITE_BIT;
    info.oldLayout = from;
    info.newLayout = to;
    info.srcQueueFamilyIndex = info.dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    info.image = image;
    info.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    vkCmdPipelineBarrier(commands, VK_PIPELINE_STAGE_ALL_COMMANDS_BIT, VK_PIPELINE_STAGE_ALL_COMMANDS_BIT, 0,
                         0, nullptr, 0, nullptr, 1, &info);
}

/// All of an image, packed in a buffer.
inline VkBufferImageCopy wholeImage(std::uint32_t width, std::uint32_t height) {
    VkBufferImageCopy copy{};
    copy.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1};
    copy.imageExtent = {width, height, 1};
    return copy;
}
