#pragma once

#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "Platform/ImageGraph/MTIContext.h"
#include "Platform/ImageGraph/Vulkan/VulkanFunctions.h"

namespace qv {

/// A failed Vulkan call; caught where the platform's interface begins.
struct VulkanError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The field's word for a result code.
const char* vulkanResultName(VkResult result);

/// Throws VulkanError naming `what` unless `result` is a success.
void check(VkResult result, const char* what);

/// What one of the device's `vkCreate…` functions makes. Throws VulkanError naming `what`; a failed call may
/// leave anything where it would have put the handle.
template <typename Info, typename Handle>
Handle created(VkResult(VKAPI_PTR* create)(VkDevice, const Info*, const VkAllocationCallbacks*, Handle*),
               VkDevice device, const Info& info, const char* what) {
    Handle handle = VK_NULL_HANDLE;
    check(create(device, &info, nullptr, &handle), what);
    return handle;
}

/// An instance, a logical device and its one queue, our own or a host's. The queue is used under
/// `queueMutex`.
class VulkanDevice {
  public:
    static std::vector<GraphicsDevice> enumerate();

    /// Throws VulkanError when there is no usable device.
    explicit VulkanDevice(const MTIContextOptions& options);
    /// The host's device, which stays the host's. Throws VulkanError when it cannot be used.
    explicit VulkanDevice(const MTIVulkanDevice& host);
    ~VulkanDevice();
    VulkanDevice(const VulkanDevice&) = delete;
    VulkanDevice& operator=(const VulkanDevice&) = delete;

    /// Destroys the device, unless it is a host's.
    void close();

    VkDevice handle() const { return device_; }
    VkPhysicalDevice physicalDevice() const { return physicalDevice_; }
    VkQueue queue() const { return queue_; }
    std::uint32_t queueFamily() const { return queueFamily_; }
    std::mutex& queueMutex() { return *queueMutex_; }
    bool isHosts() const { return isHosts_; }
    const GraphicsDevice& info() const { return info_; }
    const VkPhysicalDeviceLimits& limits() const { return limits_; }
    /// Nanoseconds of a time-stamp tick; 0 when the queue has no time stamps.
    float timestampPeriod() const { return timestampPeriod_; }

    /// A memory type that `typeBits` allows and that has all of `wanted`, else UINT32_MAX.
    std::uint32_t findMemoryType(std::uint32_t typeBits, VkMemoryPropertyFlags wanted) const;
    VkMemoryPropertyFlags memoryTypeFlags(std::uint32_t type) const {
        return memory_.memoryTypes[type].propertyFlags;
    }

    std::vector<std::string> validationMessages() const;

  private:
    void createInstance(bool validation);
    void createDevice(int index);
    void describeDevice(int index);

    VkInstance instance_ = VK_NULL_HANDLE;
    VkDebugUtilsMessengerEXT messenger_ = VK_NULL_HANDLE;
    VkPhysicalDevice physicalDevice_ = VK_NULL_HANDLE;
    VkDevice device_ = VK_NULL_HANDLE;
    VkQueue queue_ = VK_NULL_HANDLE;
    std::uint32_t queueFamily_ = 0;
    std::mutex ownQueueMutex_;
    std::mutex* queueMutex_ = &ownQueueMutex_;
    bool isHosts_ = false;
    GraphicsDevice info_;
    VkPhysicalDeviceLimits limits_{};
    VkPhysicalDeviceMemoryProperties memory_{};
    float timestampPeriod_ = 0;

    struct Messages {
        std::mutex mutex;
        std::vector<std::string> lines;
    };
    std::unique_ptr<Messages> messages_ = std::make_unique<Messages>();
    static VKAPI_ATTR VkBool32 VKAPI_CALL onMessage(VkDebugUtilsMessageSeverityFlagBitsEXT severity,
                                                    VkDebugUtilsMessageTypeFlagsEXT types,
                                                    const VkDebugUtilsMessengerCallbackDataEXT* data,
                                                    void* user);
};

}  // namespace qv
