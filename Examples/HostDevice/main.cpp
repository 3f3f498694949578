// host-device CLASS OUT.png: an effect between two images of the host's own Vulkan device, in the way an
// editor with a renderer of its own uses the library: no copy, no wait in between, ordered by semaphores.

#include <vulkan/vulkan.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "QVFilterExtension/QVFilterExtension.h"

namespace {

constexpr std::uint32_t kWidth = 640, kHeight = 360;
constexpr VkDeviceSize kBytes = VkDeviceSize(kWidth) * kHeight * 4;

int fail(const std::string& cause) {
    std::fprintf(stderr, "host-device: %s\n", cause.c_str());
    return 1;
}

/// The editor's side: a device, a queue and commands. Error checks are left out for brevity.
struct Editor {
    VkInstance instance{};
    VkPhysicalDevice physicalDevice{};
    VkDevice device{};
    VkQueue queue{};
    VkCommandPool pool{};

    Editor() {
        VkApplicationInfo application{VK_STRUCTURE_TYPE_APPLICATION_INFO};
        application.apiVersion = VK_API_VERSION_1_1;
        VkInstanceCreateInfo instanceInfo{VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO};
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

    VkImage makeImage(VkImageUsageFlags usage) const {
        VkImageCreateInfo info{VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO};
        info.imageType = VK_IMAGE_TYPE_2D;
        info.format = VK_FORMAT_R8G8B8A8_UNORM;
        info.extent = {kWidth, kHeight, 1};
        info.mipLevels = info.arrayLayers = 1;
        info.samples = VK_SAMPLE_COUNT_1_BIT;
        info.usage = usage;
        VkImage image{};
        vkCreateImage(device, &info, nullptr, &image);
        VkMemoryRequirements needs;
        vkGetImageMemoryRequirements(device, image, &needs);
        vkBindImageMemory(device, image, allocate(needs, VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT), 0);
        return image;
    }

    VkSemaphore makeSemaphore() const {
        const VkSemaphoreCreateInfo info{VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO};
        VkSemaphore semaphore{};
        vkCreateSemaphore(device, &info, nullptr, &semaphore);
        return semaphore;
    }

    /// Records and submits; does not wait for the device.
    void submit(VkSemaphore wait, VkSemaphore signal, const std::function<void(VkCommandBuffer)>& record) {
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

void changeLayout(VkCommandBuffer commands, VkImage image, VkImageLayout from, VkImageLayout to) {
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

/// The editor's own drawing: here, one colour all over.
void drawFrame(VkCommandBuffer commands, VkImage image) {
    changeLayout(commands, image, VK_IMAGE_LAYOUT_UNDEFINED, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL);
    const VkImageSubresourceRange whole{VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    const VkClearColorValue color{{0.85f, 0.45f, 0.25f, 1}};
    vkCmdClearColorImage(commands, image, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL, &color, 1, &whole);
    changeLayout(commands, image, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL,
                 VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return fail("give a class and an output file");
    Editor editor;
    if (!editor.device) return fail("there is no Vulkan device");
    std::string error;

    // One context for the editor's device. It submits to the editor's queue.
    const qv::MTIVulkanDevice device{editor.instance, editor.physicalDevice, editor.device, editor.queue, 0,
                                     nullptr};
    const auto context = qv::MTIContext::create(device, {}, &error);
    if (!context) return fail(error);
    const auto filter = qv::createFilter(argv[1]);
    auto* effect = dynamic_cast<qv::QVEffectMTIFilter*>(filter.get());
    if (!effect) return fail(std::string("there is no effect ") + argv[1]);

    const VkImage frame = editor.makeImage(VK_IMAGE_USAGE_TRANSFER_DST_BIT | VK_IMAGE_USAGE_SAMPLED_BIT);
    const VkImage result =
        editor.makeImage(VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSFER_SRC_BIT);
    const VkSemaphore drawn = editor.makeSemaphore(), filtered = editor.makeSemaphore();

    // The editor draws, the effect reads what was drawn and writes what the editor goes on with.
    editor.submit({}, drawn, [&](VkCommandBuffer commands) { drawFrame(commands, frame); });
    effect->setInputImage(qv::MTIImage::imageWithVulkanImage(
        {frame, kWidth, kHeight, VK_FORMAT_R8G8B8A8_UNORM, VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL}));
    effect->setITime(1);
    const auto task =
        context->startRender(effect->outputImage(),
                             qv::MTIVulkanImage{result, kWidth, kHeight, VK_FORMAT_R8G8B8A8_UNORM,
                                                VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL},
                             {.wait = {{drawn}}, .signal = {{filtered}}}, &error);
    if (!task) return fail(error);

    VkBufferCreateInfo bufferInfo{VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO};
    bufferInfo.size = kBytes;
    bufferInfo.usage = VK_BUFFER_USAGE_TRANSFER_DST_BIT;
    VkBuffer buffer{};
    vkCreateBuffer(editor.device, &bufferInfo, nullptr, &buffer);
    VkMemoryRequirements needs;
    vkGetBufferMemoryRequirements(editor.device, buffer, &needs);
    const VkDeviceMemory memory =
        editor.allocate(needs, VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT);
    vkBindBufferMemory(editor.device, buffer, memory, 0);
    editor.submit(filtered, {}, [&](VkCommandBuffer commands) {
        VkBufferImageCopy copy{};
        copy.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1};
        copy.imageExtent = {kWidth, kHeight, 1};
        vkCmdCopyImageToBuffer(commands, result, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL, buffer, 1, &copy);
    });
    vkQueueWaitIdle(editor.queue);

    void* pixels = nullptr;
    vkMapMemory(editor.device, memory, 0, VK_WHOLE_SIZE, 0, &pixels);
    const auto* bytes = static_cast<const std::uint8_t*>(pixels);
    const qv::Bitmap bitmap{int(kWidth), int(kHeight),
                            std::make_shared<const std::vector<std::uint8_t>>(bytes, bytes + kBytes)};
    if (!qv::writePNG(bitmap, argv[2], &error)) return fail(error);
    std::printf("%s: rendered on the editor's %s in %d passes\n", argv[2], context->device().name.c_str(),
                task->statistics().passes);
    return 0;
}
