#pragma once

#include <gtest/gtest.h>
#include <vulkan/vulkan.h>

#include <bit>
#include <cstring>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "Platform/ImageGraph/MTIVulkan.h"

namespace qv::test {

/// What the validation layer says of the host's device.
inline std::vector<std::string>& messages() {
    static std::vector<std::string> lines;
    return lines;
}

inline VKAPI_ATTR VkBool32 VKAPI_CALL onMessage(VkDebugUtilsMessageSeverityFlagBitsEXT,
                                                VkDebugUtilsMessageTypeFlagsEXT,
                                                const VkDebugUtilsMessengerCallbackDataEXT* data, void*) {
    messages().emplace_back(data->pMessage);
    return VK_FALSE;
}

/// What a video editor has: its own instance, device and queue, with the validation layer on.
class VulkanHost {
  public:
    VulkanHost() {
        VkApplicationInfo application{VK_STRUCTURE_TYPE_APPLICATION_INFO};
        application.apiVersion = VK_API_VERSION_1_1;
        VkDebugUtilsMessengerCreateInfoEXT watch{VK_STRUCTURE_TYPE_DEBUG_UTILS_MESSENGER_CREATE_INFO_EXT};
        watch.messageSeverity =
            VK_DEBUG_UTILS_MESSAGE_SEVERITY_WARNING_BIT_EXT | VK_DEBUG_UTILS_MESSAGE_SEVERITY_ERROR_BIT_EXT;
        watch.messageType = VK_DEBUG_UTILS_MESSAGE_TYPE_VALIDATION_BIT_EXT;
        watch.pfnUserCallback = onMessage;
        const VkValidationFeatureEnableEXT synchronization =
            VK_VALIDATION_FEATURE_ENABLE_SYNCHRONIZATION_VALIDATION_EXT;
        const VkValidationFeaturesEXT features{VK_STRUCTURE_TYPE_VALIDATION_FEATURES_EXT, &watch, 1,
                                               &synchronization};
        const char* const layer = "VK_LAYER_KHRONOS_validation";
        const char* const extension = VK_EXT_DEBUG_UTILS_EXTENSION_NAME;
        VkInstanceCreateInfo info{VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO, &features};
        info.pApplicationInfo = &application;
        info.enabledLayerCount = 1;
        info.ppEnabledLayerNames = &layer;
        info.enabledExtensionCount = 1;
        info.ppEnabledExtensionNames = &extension;
        EXPECT_EQ(vkCreateInstance(&info, nullptr, &instance), VK_SUCCESS);
        const auto create = PFN_vkCreateDebugUtilsMessengerEXT(
            vkGetInstanceProcAddr(instance, "vkCreateDebugUtilsMessengerEXT"));
        create(instance, &watch, nullptr, &messenger_);

        std::uint32_t one = 1;
        vkEnumeratePhysicalDevices(instance, &one, &physicalDevice);
        const float priority = 1;
        VkDeviceQueueCreateInfo queueInfo{VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO};
        queueInfo.queueCount = 1;
        queueInfo.pQueuePriorities = &priority;
        VkDeviceCreateInfo deviceInfo{VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO};
        deviceInfo.queueCreateInfoCount = 1;
        deviceInfo.pQueueCreateInfos = &queueInfo;
        EXPECT_EQ(vkCreateDevice(physicalDevice, &deviceInfo, nullptr, &device), VK_SUCCESS);
        vkGetDeviceQueue(device, 0, 0, &queue);
        VkCommandPoolCreateInfo poolInfo{VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO};
        vkCreateCommandPool(device, &poolInfo, nullptr, &commandPool_);
    }
    ~VulkanHost() {
        for (const auto& destroyLater : destroys_) destroyLater();
        vkDestroyCommandPool(device, commandPool_, nullptr);
        vkDestroyDevice(device, nullptr);
        const auto destroy = PFN_vkDestroyDebugUtilsMessengerEXT(
            vkGetInstanceProcAddr(instance, "vkDestroyDebugUtilsMessengerEXT"));
        destroy(instance, messenger_, nullptr);
        vkDestroyInstance(instance, nullptr);
    }

    MTIVulkanDevice shared() { return {instance, physicalDevice, device, queue, 0, &queueMutex_}; }

    MTIVulkanImage makeImage(int width, int height, VkFormat format, VkImageLayout layout) {
        VkImageCreateInfo info{VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO};
        info.imageType = VK_IMAGE_TYPE_2D;
        info.format = format;
        info.extent = {std::uint32_t(width), std::uint32_t(height), 1};
        info.mipLevels = info.arrayLayers = 1;
        info.samples = VK_SAMPLE_COUNT_1_BIT;
        info.usage = VK_IMAGE_USAGE_SAMPLED_BIT | VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT |
                     VK_IMAGE_USAGE_TRANSFER_SRC_BIT | VK_IMAGE_USAGE_TRANSFER_DST_BIT;
        VkImage image = VK_NULL_HANDLE;
        EXPECT_EQ(vkCreateImage(device, &info, nullptr, &image), VK_SUCCESS);
        VkMemoryRequirements needs;
        vkGetImageMemoryRequirements(device, image, &needs);
        const VkDeviceMemory memory = allocate(needs);
        vkBindImageMemory(device, image, memory, 0);
        destroys_.push_back([=, this] {
            vkDestroyImage(device, image, nullptr);
            vkFreeMemory(device, memory, nullptr);
        });
        return {image, width, height, format, layout, nullptr};
    }

    VkSemaphore makeSemaphore() {
        const VkSemaphoreCreateInfo info{VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO};
        VkSemaphore semaphore = VK_NULL_HANDLE;
        vkCreateSemaphore(device, &info, nullptr, &semaphore);
        destroys_.push_back([=, this] { vkDestroySemaphore(device, semaphore, nullptr); });
        return semaphore;
    }

    /// Copies bytes into an image and leaves it in its layout, without waiting.
    void upload(const MTIVulkanImage& image, const std::vector<std::uint8_t>& bytes, VkSemaphore signal) {
        const auto [buffer, pixels] = makeBuffer(bytes.size());
        std::memcpy(pixels, bytes.data(), bytes.size());
        run({}, signal, [&, buffer = buffer](VkCommandBuffer commands) {
            barrier(commands, image.image, VK_IMAGE_LAYOUT_UNDEFINED, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL);
            const VkBufferImageCopy copy = wholeOf(image);
            vkCmdCopyBufferToImage(commands, buffer, image.image, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL, 1,
                                   &copy);
            barrier(commands, image.image, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL, VkImageLayout(image.layout));
        });
    }

    /// The bytes of an image that is in TRANSFER_SRC_OPTIMAL, once `wait` is signalled.
    std::vector<std::uint8_t> download(const MTIVulkanImage& image, std::size_t size, VkSemaphore wait) {
        const auto [buffer, pixels] = makeBuffer(size);
        run(wait, {}, [&, buffer = buffer](VkCommandBuffer commands) {
            const VkBufferImageCopy copy = wholeOf(image);
            vkCmdCopyImageToBuffer(commands, image.image, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL, buffer, 1,
                                   &copy);
        });
        vkQueueWaitIdle(queue);
        return {pixels, pixels + size};
    }

    VkInstance instance = VK_NULL_HANDLE;
    VkPhysicalDevice physicalDevice = VK_NULL_HANDLE;
    VkDevice device = VK_NULL_HANDLE;
    VkQueue queue = VK_NULL_HANDLE;

  private:
    static VkBufferImageCopy wholeOf(const MTIVulkanImage& image) {
        return {0,         0,
                0,         {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1},
                {0, 0, 0}, {std::uint32_t(image.width), std::uint32_t(image.height), 1}};
    }

    VkDeviceMemory allocate(const VkMemoryRequirements& needs) {
        // The first type that fits is host-visible on a software device, which is what tests run on.
        VkMemoryAllocateInfo info{VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO};
        info.allocationSize = needs.size;
        info.memoryTypeIndex = std::uint32_t(std::countr_zero(needs.memoryTypeBits));
        VkDeviceMemory memory = VK_NULL_HANDLE;
        EXPECT_EQ(vkAllocateMemory(device, &info, nullptr, &memory), VK_SUCCESS);
        return memory;
    }

    std::pair<VkBuffer, std::uint8_t*> makeBuffer(std::size_t size) {
        VkBufferCreateInfo info{VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO};
        info.size = size;
        info.usage = VK_BUFFER_USAGE_TRANSFER_SRC_BIT | VK_BUFFER_USAGE_TRANSFER_DST_BIT;
        VkBuffer buffer = VK_NULL_HANDLE;
        vkCreateBuffer(device, &info, nullptr, &buffer);
        VkMemoryRequirements needs;
        vkGetBufferMemoryRequirements(device, buffer, &needs);
        const VkDeviceMemory memory = allocate(needs);
        vkBindBufferMemory(device, buffer, memory, 0);
        void* mapped = nullptr;
        EXPECT_EQ(vkMapMemory(device, memory, 0, VK_WHOLE_SIZE, 0, &mapped), VK_SUCCESS);
        destroys_.push_back([=, this] {
            vkDestroyBuffer(device, buffer, nullptr);
            vkFreeMemory(device, memory, nullptr);
        });
        return {buffer, static_cast<std::uint8_t*>(mapped)};
    }

    static void barrier(VkCommandBuffer commands, VkImage image, VkImageLayout from, VkImageLayout to) {
        VkImageMemoryBarrier info{VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER};
        info.srcAccessMask = VK_ACCESS_MEMORY_WRITE_BIT;
        info.dstAccessMask = VK_ACCESS_MEMORY_READ_BIT | VK_ACCESS_MEMORY_WRITE_BIT;
        info.oldLayout = from;
        info.newLayout = to;
        info.srcQueueFamilyIndex = info.dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
        info.image = image;
        info.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
        vkCmdPipelineBarrier(commands, VK_PIPELINE_STAGE_ALL_COMMANDS_BIT, VK_PIPELINE_STAGE_ALL_COMMANDS_BIT,
                             0, 0, nullptr, 0, nullptr, 1, &info);
    }

    template <typename Record>
    void run(VkSemaphore wait, VkSemaphore signal, Record&& record) {
        VkCommandBufferAllocateInfo allocation{VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO};
        allocation.commandPool = commandPool_;
        allocation.commandBufferCount = 1;
        VkCommandBuffer commands = VK_NULL_HANDLE;
        vkAllocateCommandBuffers(device, &allocation, &commands);
        const VkCommandBufferBeginInfo begin{VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO};
        vkBeginCommandBuffer(commands, &begin);
        record(commands);
        vkEndCommandBuffer(commands);
        const VkPipelineStageFlags stage = VK_PIPELINE_STAGE_ALL_COMMANDS_BIT;
        VkSubmitInfo submit{VK_STRUCTURE_TYPE_SUBMIT_INFO};
        submit.commandBufferCount = 1;
        submit.pCommandBuffers = &commands;
        submit.waitSemaphoreCount = wait ? 1 : 0;
        submit.pWaitSemaphores = &wait;
        submit.pWaitDstStageMask = &stage;
        submit.signalSemaphoreCount = signal ? 1 : 0;
        submit.pSignalSemaphores = &signal;
        EXPECT_EQ(vkQueueSubmit(queue, 1, &submit, VK_NULL_HANDLE), VK_SUCCESS);
    }

    VkDebugUtilsMessengerEXT messenger_ = VK_NULL_HANDLE;
    VkCommandPool commandPool_ = VK_NULL_HANDLE;
    std::mutex queueMutex_;
    std::vector<std::function<void()>> destroys_;
};

}  // namespace qv::test
