#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

// The handles of Vulkan, declared as its own header declares them on 64-bit systems, so that a host passes
// its own without a cast and nothing here needs that header.
struct VkInstance_T;
struct VkPhysicalDevice_T;
struct VkDevice_T;
struct VkQueue_T;
struct VkImage_T;
struct VkSemaphore_T;

/// Rendering on a host's own device, from and into its own images, without a copy.
namespace qv {

/// A host's device and the queue that a context shall submit to. Vulkan 1.1; no features and no extensions
/// are needed. Everything must outlive the context; a context that is destroyed leaves nothing on the device.
struct MTIVulkanDevice {
    VkInstance_T* instance = nullptr;              ///< of Vulkan 1.1 or later
    VkPhysicalDevice_T* physicalDevice = nullptr;  ///< that `device` was made of
    VkDevice_T* device = nullptr;                  ///< that renders
    VkQueue_T* queue = nullptr;                    ///< of a family that draws
    std::uint32_t queueFamily = 0;                 ///< index of the queue's family
    /// Held while the context uses the queue. Nil when no other thread of the host does so meanwhile.
    std::mutex* queueMutex = nullptr;
};

/// A host's image: two-dimensional, one level, one layer, one sample, premultiplied colour, owned by the
/// context's queue family or shared between families. `format` is a VkFormat: R8G8B8A8_UNORM (37),
/// B8G8R8A8_UNORM (44) or R16G16B16A16_SFLOAT (97); `layout` a VkImageLayout.
///
/// Read from: usage SAMPLED; it is in `layout`, GENERAL (1) or SHADER_READ_ONLY_OPTIMAL (5), and stays in it.
/// Its content may change between renders, not during one.
/// Rendered into: usage COLOR_ATTACHMENT; what it held is lost, whatever its layout was, and it is left in
/// `layout`, which may be any that the host goes on with. It must not be read by the same render.
struct MTIVulkanImage {
    VkImage_T* image = nullptr;  ///< made on the context's device
    int width = 0, height = 0;   ///< pixels
    std::int32_t format = 37;    ///< VkFormat
    std::int32_t layout = 5;     ///< VkImageLayout
    /// What keeps the image alive, or nil when the host sees to it: until the graph nodes that read it are
    /// gone, and the tasks that rendered from or into it have been waited for.
    std::shared_ptr<void> owner = nullptr;
};

/// A semaphore of the host. `value` counts for a timeline semaphore and is 0 for a binary one.
struct MTIVulkanSemaphore {
    VkSemaphore_T* semaphore = nullptr;  ///< made on the context's device
    std::uint64_t value = 0;             ///< to wait for or to signal
};

/// How a render fits into the host's own work on the device. Without semaphores, a render comes after what
/// was submitted to the same queue before it and sees what that wrote; and its result is visible to whatever
/// is submitted to that queue afterwards. With semaphores the work may be on any queue. After
/// `RenderTask::wait` the images are the host's own again.
struct MTIVulkanSync {
    std::vector<MTIVulkanSemaphore> wait;    ///< before any image is read or written
    std::vector<MTIVulkanSemaphore> signal;  ///< when the result is there, in its layout
};

}  // namespace qv
