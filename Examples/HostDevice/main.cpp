// host-device CLASS OUT.png: an effect between two images of the host's own Vulkan device, in the way an
// editor with a renderer of its own uses the library: no copy, no wait in between, ordered by semaphores.

#include <cstdio>
#include <string>
#include <vector>

#include "Editor.h"
#include "QVFilterExtension/QVFilterExtension.h"

namespace {

constexpr std::uint32_t kWidth = 640, kHeight = 360;
constexpr VkDeviceSize kBytes = VkDeviceSize(kWidth) * kHeight * 4;

int fail(const std::string& cause) {
    std::fprintf(stderr, "host-device: %s\n", cause.c_str());
    return 1;
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

    constexpr VkFormat kFormat = VK_FORMAT_R8G8B8A8_UNORM;
    const Editor::Image frame = editor.makeImage(
        kWidth, kHeight, kFormat, VK_IMAGE_USAGE_TRANSFER_DST_BIT | VK_IMAGE_USAGE_SAMPLED_BIT);
    const Editor::Image result = editor.makeImage(
        kWidth, kHeight, kFormat, VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSFER_SRC_BIT);
    const VkSemaphore drawn = editor.makeSemaphore(), filtered = editor.makeSemaphore();

    // The editor draws, the effect reads what was drawn and writes what the editor goes on with.
    editor.submit({}, drawn, [&](VkCommandBuffer commands) { drawFrame(commands, frame.image); });
    effect->setInputImage(qv::MTIImage::imageWithVulkanImage(
        {frame.image, kWidth, kHeight, kFormat, VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL}));
    effect->setITime(1);
    const auto task = context->startRender(
        effect->outputImage(),
        qv::MTIVulkanImage{result.image, kWidth, kHeight, kFormat, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL},
        {.wait = {{drawn}}, .signal = {{filtered}}}, &error);
    if (!task) return fail(error);

    const Editor::Buffer buffer = editor.makeBuffer(kBytes);
    editor.submit(filtered, {}, [&](VkCommandBuffer commands) {
        const VkBufferImageCopy whole = wholeImage(kWidth, kHeight);
        vkCmdCopyImageToBuffer(commands, result.image, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL, buffer.buffer, 1,
                               &whole);
    });
    vkQueueWaitIdle(editor.queue);

    const qv::Bitmap bitmap{
        int(kWidth), int(kHeight),
        std::make_shared<const std::vector<std::uint8_t>>(buffer.bytes, buffer.bytes + kBytes)};
    if (!qv::writePNG(bitmap, argv[2], &error)) return fail(error);
    std::printf("%s: rendered on the editor's %s in %d passes\n", argv[2], context->device().name.c_str(),
                task->statistics().passes);
    return 0;
}
