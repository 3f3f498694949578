#include <array>
#include <span>

#include "Bindings/C/Interface.h"
#include "Platform/ImageGraph/MTIContext.h"

struct qv_context {
    std::shared_ptr<qv::MTIContext> context;
};

struct qv_task {
    std::unique_ptr<qv::RenderTask> task;
    std::shared_ptr<qv::MTIContext> context;
    qv::PixelBuffer rendered;  ///< of a packed frame: what the device writes
    qv_frame packed;           ///< where it goes then
};

namespace qv::c {

namespace {

/// What is rendered into for a caller's frame: its own memory, or RGBA8 beside it when it is packed. It has
/// to have the image's size.
PixelBuffer targetFor(const qv_frame& frame, const MTIImage& image) {
    checkFrame(frame);
    if (CGSize{double(frame.width), double(frame.height)} != image.size()) {
        fail("the image has {}x{} pixels, the frame {}x{}", image.size().width, image.size().height,
             frame.width, frame.height);
    }
    if (!isPacked(frame)) return wrapFrame(frame, {frame.planes[0], [](const void*) {}});
    PixelBuffer rgba = PixelBuffer::create(PixelFormat::rgba8, frame.width, frame.height);
    if (!rgba) throw std::bad_alloc();
    return rgba;
}

std::shared_ptr<MTIContext> contextOf(qv_context* context) {
    if (context) return context->context;
    if (auto shared = QVMTIFilter::sharedContext()) return shared;
    std::string cause;
    if (auto made = MTIContext::create({}, &cause)) return made;
    fail("{}", cause);
}

MTIContextOptions contextOptions(const qv_context_options* given) {
    MTIContextOptions options;
    if (!given) return options;
    const qv_context_options known = c::known(given, "options");
    if (known.device == QV_DEVICE_NATIVE)
        options.deviceKind = MTIDeviceKind::native;
    else
        options.deviceIndex = known.device;
    options.threads = known.threads;
    if (known.deep) options.workingPixelFormat = MTIPixelFormat::rgba16Float;
    if (known.fuse_at_once) options.fusion = MTIFusion::beforeFirstFrame;
    if (known.plain_passes) options.fusion = MTIFusion::off;
    if (known.texture_budget) options.textureBudgetBytes = known.texture_budget;
    if (known.shader_cache) options.shaderCacheDirectory = known.shader_cache;
    return options;
}

std::vector<MTIVulkanSemaphore> semaphores(const qv_vulkan_semaphore* first, std::size_t count) {
    std::vector<MTIVulkanSemaphore> all;
    if (count > 0) required(first, "list of semaphores");
    for (const qv_vulkan_semaphore& each : std::span(first, count))
        all.push_back({each.semaphore, each.value});
    return all;
}

MTIVulkanImage vulkanImage(const qv_vulkan_image* given) {
    const qv_vulkan_image image = known(given, "Vulkan image");
    return {image.image, image.width, image.height, image.format, image.layout};
}

qv_context* newContext(std::shared_ptr<MTIContext> context, const std::string& cause) {
    if (!context) fail("{}", cause);
    return new qv_context{std::move(context)};
}

}  // namespace
}  // namespace qv::c

using namespace qv::c;

qv_context* qv_context_create(const qv_context_options* options, char* error, size_t error_size) {
    return guarded({error, error_size}, [&] {
        std::string cause;
        auto context = qv::MTIContext::create(contextOptions(options), &cause);
        return newContext(std::move(context), cause);
    });
}

qv_context* qv_context_create_on_device(const qv_vulkan_device* device, const qv_context_options* options,
                                        char* error, size_t error_size) {
    return guarded({error, error_size}, [&] {
        const qv_vulkan_device host = known(device, "device");
        std::string cause;
        auto context = qv::MTIContext::create(qv::MTIVulkanDevice{host.instance, host.physical_device,
                                                                  host.device, host.queue, host.queue_family},
                                              contextOptions(options), &cause);
        return newContext(std::move(context), cause);
    });
}

void qv_context_destroy(qv_context* context) {
    delete context;
}

qv_image* qv_image_from_vulkan(const qv_vulkan_image* image, char* error, size_t error_size) {
    return guarded({error, error_size}, [&] {
        qv::MTIImage wrapped = qv::MTIImage::imageWithVulkanImage(vulkanImage(image));
        if (!wrapped) fail("the Vulkan image has no size, format or layout that can be read");
        return new qv_image{std::move(wrapped), {}};
    });
}

qv_task* qv_render_start(qv_context* context, const qv_image* image, const qv_frame* destination, char* error,
                         size_t error_size) {
    return guarded({error, error_size}, [&] {
        const qv_frame frame = known(destination, "destination");
        const qv::MTIImage& picture = required(image, "image").image;
        auto task = std::make_unique<qv_task>();
        task->context = contextOf(context);
        task->rendered = targetFor(frame, picture);
        task->packed = frame;
        std::string cause;
        task->task = task->context->startRender(picture, task->rendered, &cause);
        if (!task->task) fail("{}", cause);
        if (!isPacked(frame)) task->rendered = {};
        return task.release();
    });
}

qv_task* qv_render_start_vulkan(qv_context* context, const qv_image* image,
                                const qv_vulkan_image* destination, const qv_vulkan_sync* sync, char* error,
                                size_t error_size) {
    return guarded({error, error_size}, [&] {
        qv::MTIVulkanSync order;
        if (sync) {
            const qv_vulkan_sync given = known(sync, "sync");
            order = {semaphores(given.wait, given.wait_count), semaphores(given.signal, given.signal_count)};
        }
        auto task = std::make_unique<qv_task>();
        task->context = required(context, "context").context;
        std::string cause;
        task->task = task->context->startRender(required(image, "image").image, vulkanImage(destination),
                                                order, &cause);
        if (!task->task) fail("{}", cause);
        return task.release();
    });
}

int qv_task_wait(qv_task* task, char* error, size_t error_size) {
    const std::unique_ptr<qv_task> ended(task);
    return guarded({error, error_size}, [&] {
        std::string cause;
        if (!required(task, "task").task->wait(&cause)) fail("{}", cause);
        if (task->rendered) pack(task->rendered, task->packed);
        return 1;
    });
}

int qv_render(qv_context* context, const qv_image* image, const qv_frame* destination, char* error,
              size_t error_size) {
    qv_task* task = qv_render_start(context, image, destination, error, error_size);
    return task ? qv_task_wait(task, error, error_size) : 0;
}

int qv_prepare(qv_context* context, const qv_image* image, const qv_frame* destination, char* error,
               size_t error_size) {
    return guarded({error, error_size}, [&] {
        const qv::MTIImage& picture = required(image, "image").image;
        contextOf(context)->prepare(picture, targetFor(known(destination, "destination"), picture));
        return 1;
    });
}
