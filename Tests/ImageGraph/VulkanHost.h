#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <mutex>
#include <string>
#include <vector>

#include "Examples/HostDevice/Editor.h"
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

/// What has the validation layer watch an instance.
struct Watch {
    Watch() {
        messenger.messageSeverity =
            VK_DEBUG_UTILS_MESSAGE_SEVERITY_WARNING_BIT_EXT | VK_DEBUG_UTILS_MESSAGE_SEVERITY_ERROR_BIT_EXT;
        messenger.messageType = VK_DEBUG_UTILS_MESSAGE_TYPE_VALIDATION_BIT_EXT;
        messenger.pfnUserCallback = onMessage;
        info.enabledLayerCount = 1;
        info.ppEnabledLayerNames = &layer;
        info.enabledExtensionCount = 1;
        info.ppEnabledExtensionNames = &extension;
    }
    const char* layer = "VK_LAYER_KHRONOS_validation";
    const char* extension = VK_EXT_DEBUG_UTILS_EXTENSION_NAME;
    VkDebugUtilsMessengerCreateInfoEXT messenger{VK_STRUCTURE_TYPE_DEBUG_UTILS_MESSENGER_CREATE_INFO_EXT};
    VkValidationFeatureEnableEXT synchronization =
        VK_VALIDATION_FEATURE_ENABLE_SYNCHRONIZATION_VALIDATION_EXT;
    VkValidationFeaturesEXT features{VK_STRUCTURE_TYPE_VALIDATION_FEATURES_EXT, &messenger, 1,
                                     &synchronization};
    VkInstanceCreateInfo info{VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO, &features};
};

/// What a video editor has, with the validation layer on; frees what it made.
class VulkanHost : private Watch, private Editor {
  public:
    VulkanHost() : Editor(info) {
        EXPECT_TRUE(device);
        const auto create = PFN_vkCreateDebugUtilsMessengerEXT(
            vkGetInstanceProcAddr(instance, "vkCreateDebugUtilsMessengerEXT"));
        create(instance, &messenger, nullptr, &messenger_);
    }
    ~VulkanHost() {
        for (const Image& each : images_) {
            vkDestroyImage(device, each.image, nullptr);
            vkFreeMemory(device, each.memory, nullptr);
        }
        for (const Buffer& each : buffers_) {
            vkDestroyBuffer(device, each.buffer, nullptr);
            vkFreeMemory(device, each.memory, nullptr);
        }
        for (VkSemaphore each : semaphores_) vkDestroySemaphore(device, each, nullptr);
        vkDestroyCommandPool(device, pool, nullptr);
        vkDestroyDevice(device, nullptr);
        const auto destroy = PFN_vkDestroyDebugUtilsMessengerEXT(
            vkGetInstanceProcAddr(instance, "vkDestroyDebugUtilsMessengerEXT"));
        destroy(instance, messenger_, nullptr);
        vkDestroyInstance(instance, nullptr);
    }

    MTIVulkanDevice shared() { return {instance, physicalDevice, device, queue, 0, &queueMutex_}; }

    MTIVulkanImage makeImage(int width, int height, VkFormat format, VkImageLayout layout) {
        images_.push_back(Editor::makeImage(std::uint32_t(width), std::uint32_t(height), format,
                                            VK_IMAGE_USAGE_SAMPLED_BIT | VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT |
                                                VK_IMAGE_USAGE_TRANSFER_SRC_BIT |
                                                VK_IMAGE_USAGE_TRANSFER_DST_BIT));
        return {images_.back().image, width, height, format, layout, nullptr};
    }

    VkSemaphore makeSemaphore() { return semaphores_.emplace_back(Editor::makeSemaphore()); }

    /// Copies bytes into an image and leaves it in its layout, without waiting.
    void upload(const MTIVulkanImage& image, const std::vector<std::uint8_t>& bytes, VkSemaphore signal) {
        const Buffer& buffer = buffers_.emplace_back(makeBuffer(bytes.size()));
        std::memcpy(buffer.bytes, bytes.data(), bytes.size());
        submit({}, signal, [&](VkCommandBuffer commands) {
            constexpr VkImageLayout kTaking = VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL;
            changeLayout(commands, image.image, VK_IMAGE_LAYOUT_UNDEFINED, kTaking);
            const auto whole = wholeImage(std::uint32_t(image.width), std::uint32_t(image.height));
            vkCmdCopyBufferToImage(commands, buffer.buffer, image.image, kTaking, 1, &whole);
            changeLayout(commands, image.image, kTaking, VkImageLayout(image.layout));
        });
    }

    /// The bytes of an image that is in TRANSFER_SRC_OPTIMAL, once `wait` is signalled.
    std::vector<std::uint8_t> download(const MTIVulkanImage& image, std::size_t size, VkSemaphore wait) {
        const Buffer& buffer = buffers_.emplace_back(makeBuffer(size));
        submit(wait, {}, [&](VkCommandBuffer commands) {
            const auto whole = wholeImage(std::uint32_t(image.width), std::uint32_t(image.height));
            vkCmdCopyImageToBuffer(commands, image.image, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL, buffer.buffer,
                                   1, &whole);
        });
        vkQueueWaitIdle(queue);
        return {buffer.bytes, buffer.bytes + size};
    }

  private:
    VkDebugUtilsMessengerEXT messenger_ = VK_NULL_HANDLE;
    std::mutex queueMutex_;
    std::vector<Image> images_;
    std::vector<Buffer> buffers_;
    std::vector<VkSemaphore> semaphores_;
};

}  // namespace qv::test
