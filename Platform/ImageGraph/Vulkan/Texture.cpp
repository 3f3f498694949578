#include "Platform/ImageGraph/Vulkan/Texture.h"

#include <algorithm>
#include <bit>
#include <initializer_list>

namespace qv {

VkFormat vulkanFormat(TextureFormat format) {
    switch (format) {
        case TextureFormat::rgba8:
            return VK_FORMAT_R8G8B8A8_UNORM;
        case TextureFormat::rgba16Float:
            return VK_FORMAT_R16G16B16A16_SFLOAT;
        case TextureFormat::rgba32Float:
            return VK_FORMAT_R32G32B32A32_SFLOAT;
        case TextureFormat::bgra8:
            return VK_FORMAT_B8G8R8A8_UNORM;
        case TextureFormat::r8:
            return VK_FORMAT_R8_UNORM;
        case TextureFormat::rg8:
            return VK_FORMAT_R8G8_UNORM;
        case TextureFormat::r16:
            return VK_FORMAT_R16_UNORM;
    }
    return VK_FORMAT_UNDEFINED;
}

namespace {

constexpr VkImageUsageFlags kTextureUsage = VK_IMAGE_USAGE_SAMPLED_BIT | VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT |
                                            VK_IMAGE_USAGE_TRANSFER_SRC_BIT | VK_IMAGE_USAGE_TRANSFER_DST_BIT;
constexpr VkMemoryPropertyFlags kHostMemory =
    VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT;

VkSampler makeSampler(VkDevice device) {
    VkSamplerCreateInfo info{VK_STRUCTURE_TYPE_SAMPLER_CREATE_INFO};
    info.magFilter = info.minFilter = VK_FILTER_LINEAR;
    info.addressModeU = info.addressModeV = info.addressModeW = VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_EDGE;
    return created(vkCreateSampler, device, info, "cannot create a sampler");
}

bool supportsHostTextures(VulkanDevice& device) {
    if (!device.info().isProcessor) return false;
    VkImageFormatProperties properties;
    for (TextureFormat format : {TextureFormat::rgba8, TextureFormat::rgba16Float}) {
        if (vkGetPhysicalDeviceImageFormatProperties(device.physicalDevice(), vulkanFormat(format),
                                                     VK_IMAGE_TYPE_2D, VK_IMAGE_TILING_LINEAR, kTextureUsage,
                                                     0, &properties) < 0) {
            return false;
        }
    }
    return true;
}

}  // namespace

DeviceResources::DeviceResources(const MTIContextOptions& options) : device(options) {
    setUp(options);
}

DeviceResources::DeviceResources(const MTIVulkanDevice& host, const MTIContextOptions& options)
    : device(host) {
    setUp(options);
}

void DeviceResources::setUp(const MTIContextOptions& options) {
    sampler = makeSampler(device.handle());
    hostTextures = !options.gpuPaths && supportsHostTextures(device);
}

DeviceResources::~DeviceResources() {
    close();
}

void DeviceResources::close() {
    std::scoped_lock lock(mutex_);
    if (!sampler) return;
    for (Texture* texture : textures_) texture->destroy();
    textures_.clear();
    for (const auto& [key, pass] : renderPasses_) vkDestroyRenderPass(device.handle(), pass, nullptr);
    renderPasses_.clear();
    vkDestroySampler(device.handle(), sampler, nullptr);
    sampler = VK_NULL_HANDLE;
    memory.releaseAll();
    device.close();
}

void DeviceResources::add(Texture& texture) {
    std::scoped_lock lock(mutex_);
    textures_.insert(&texture);
}

void DeviceResources::remove(Texture& texture) {
    std::scoped_lock lock(mutex_);
    if (textures_.erase(&texture)) texture.destroy();
}

VkSampleCountFlagBits DeviceResources::sampleCount(int wanted) const {
    // What limits tell holds for every format that can be drawn into.
    const std::uint32_t counts = device.limits().framebufferColorSampleCounts | VK_SAMPLE_COUNT_1_BIT;
    std::uint32_t count = std::bit_floor(counts);
    while (const std::uint32_t fewer = std::bit_floor(counts & (count - 1))) {
        if (int(fewer) < wanted) break;
        count = fewer;
    }
    return VkSampleCountFlagBits(count);
}

VkRenderPass DeviceResources::renderPass(TextureFormat format, TargetUse use, int samples, bool clears) {
    const VkSampleCountFlagBits count = sampleCount(samples);
    std::scoped_lock lock(mutex_);
    VkRenderPass& pass = renderPasses_[{format, use, count, clears}];
    if (pass) return pass;

    VkAttachmentDescription target{};
    target.format = vulkanFormat(format);
    target.samples = VK_SAMPLE_COUNT_1_BIT;
    // Every pass clears or covers its whole target, so nothing is loaded.
    target.loadOp = clears ? VK_ATTACHMENT_LOAD_OP_CLEAR : VK_ATTACHMENT_LOAD_OP_DONT_CARE;
    target.storeOp = VK_ATTACHMENT_STORE_OP_STORE;
    target.stencilLoadOp = VK_ATTACHMENT_LOAD_OP_DONT_CARE;
    target.stencilStoreOp = VK_ATTACHMENT_STORE_OP_DONT_CARE;
    target.initialLayout = VK_IMAGE_LAYOUT_UNDEFINED;
    target.finalLayout =
        use == TargetUse::hostVisible ? VK_IMAGE_LAYOUT_GENERAL : VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL;
    VkAttachmentDescription several = target;
    several.samples = count;
    several.storeOp = VK_ATTACHMENT_STORE_OP_DONT_CARE;
    several.finalLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
    const bool resolves = count > VK_SAMPLE_COUNT_1_BIT;
    if (resolves) target.loadOp = VK_ATTACHMENT_LOAD_OP_DONT_CARE;
    const VkAttachmentDescription attachments[] = {target, several};
    const VkAttachmentReference references[] = {{0, VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL},
                                                {1, VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL}};
    VkSubpassDescription subpass{};
    subpass.pipelineBindPoint = VK_PIPELINE_BIND_POINT_GRAPHICS;
    subpass.colorAttachmentCount = 1;
    subpass.pColorAttachments = &references[resolves ? 1 : 0];
    subpass.pResolveAttachments = resolves ? &references[0] : nullptr;
    // Before: earlier readers and writers of a reused texture. After: whoever reads the result.
    VkSubpassDependency dependencies[2]{};
    dependencies[0].srcSubpass = VK_SUBPASS_EXTERNAL;
    dependencies[0].srcStageMask = VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT | VK_PIPELINE_STAGE_TRANSFER_BIT |
                                   VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT;
    dependencies[0].dstStageMask = VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT;
    dependencies[0].srcAccessMask = VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT | VK_ACCESS_TRANSFER_WRITE_BIT;
    dependencies[0].dstAccessMask =
        VK_ACCESS_COLOR_ATTACHMENT_READ_BIT | VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT;
    dependencies[1].dstSubpass = VK_SUBPASS_EXTERNAL;
    dependencies[1].srcStageMask = VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT;
    dependencies[1].dstStageMask =
        VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT | VK_PIPELINE_STAGE_TRANSFER_BIT | VK_PIPELINE_STAGE_HOST_BIT;
    dependencies[1].srcAccessMask = VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT;
    dependencies[1].dstAccessMask =
        VK_ACCESS_SHADER_READ_BIT | VK_ACCESS_TRANSFER_READ_BIT | VK_ACCESS_HOST_READ_BIT;
    VkRenderPassCreateInfo info{VK_STRUCTURE_TYPE_RENDER_PASS_CREATE_INFO};
    info.attachmentCount = resolves ? 2 : 1;
    info.pAttachments = attachments;
    info.subpassCount = 1;
    info.pSubpasses = &subpass;
    info.dependencyCount = 2;
    info.pDependencies = dependencies;
    return pass = created(vkCreateRenderPass, device.handle(), info, "cannot create a render pass");
}

Texture::Texture(DeviceResources& resources, const TextureKey& key) : resources_(resources), key_(key) {
    try {
        create();
        createView();
        resources_.add(*this);
    } catch (...) {
        destroy();
        throw;
    }
}

Texture::Texture(DeviceResources& resources, const TextureKey& key, const MTIVulkanImage& host)
    : layout(VkImageLayout(host.layout)),
      resources_(resources),
      key_(key),
      hostOwner_(host.owner),
      isHosts_(true),
      image_(host.image) {
    try {
        createView();
        resources_.add(*this);
    } catch (...) {
        destroy();
        throw;
    }
}

Texture::~Texture() {
    resources_.remove(*this);
}

void Texture::create() {
    const VkDevice device = resources_.device.handle();
    VkImageCreateInfo info{VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO};
    info.imageType = VK_IMAGE_TYPE_2D;
    info.format = vulkanFormat(key_.format);
    info.extent = {std::uint32_t(key_.width), std::uint32_t(key_.height), 1};
    info.mipLevels = 1;
    info.arrayLayers = 1;
    info.samples = resources_.sampleCount(key_.samples);
    info.tiling = key_.hostVisible ? VK_IMAGE_TILING_LINEAR : VK_IMAGE_TILING_OPTIMAL;
    info.usage = key_.samples > 1
                     ? VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSIENT_ATTACHMENT_BIT
                     : kTextureUsage;
    // Preinitialised keeps what the host writes before the first use.
    info.initialLayout = key_.hostVisible ? VK_IMAGE_LAYOUT_PREINITIALIZED : VK_IMAGE_LAYOUT_UNDEFINED;
    layout = info.initialLayout;
    const std::uint32_t largest = resources_.device.limits().maxImageDimension2D;
    if (info.extent.width > largest || info.extent.height > largest) {
        throw VulkanError("the picture is larger than the device's limit of " + std::to_string(largest) +
                          " pixels a side");
    }
    image_ = created(vkCreateImage, device, info, "cannot create a texture");

    VkMemoryRequirements needs;
    vkGetImageMemoryRequirements(device, image_, &needs);
    constexpr VkMemoryPropertyFlags kDeviceMemory = VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT;
    memory_ =
        resources_.memory.allocate(needs, key_.hostVisible ? kHostMemory : kDeviceMemory, key_.hostVisible);
    check(vkBindImageMemory(device, image_, memory_.memory, memory_.offset), "cannot bind texture memory");
    if (key_.hostVisible) {
        const VkImageSubresource first{VK_IMAGE_ASPECT_COLOR_BIT, 0, 0};
        VkSubresourceLayout placed;
        vkGetImageSubresourceLayout(device, image_, &first, &placed);
        pixels_ = memory_.mapped + placed.offset;
        rowBytes_ = std::size_t(placed.rowPitch);
    }
}

void Texture::createView() {
    VkImageViewCreateInfo info{VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO};
    info.image = image_;
    info.viewType = VK_IMAGE_VIEW_TYPE_2D;
    info.format = vulkanFormat(key_.format);
    info.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    view_ = created(vkCreateImageView, resources_.device.handle(), info, "cannot create a texture view");
}

namespace {

VkFramebuffer makeFramebuffer(DeviceResources& resources, const TextureKey& key,
                              std::initializer_list<VkImageView> views) {
    VkFramebufferCreateInfo info{VK_STRUCTURE_TYPE_FRAMEBUFFER_CREATE_INFO};
    info.renderPass = resources.renderPass(key.format, DeviceResources::TargetUse::sampled, key.samples);
    info.attachmentCount = std::uint32_t(views.size());
    info.pAttachments = views.begin();
    info.width = std::uint32_t(key.width);
    info.height = std::uint32_t(key.height);
    info.layers = 1;
    return created(vkCreateFramebuffer, resources.device.handle(), info, "cannot create a framebuffer");
}

}  // namespace

VkFramebuffer Texture::framebuffer() {
    if (!framebuffer_) framebuffer_ = makeFramebuffer(resources_, key_, {view_});
    return framebuffer_;
}

ResolvingFramebuffer::ResolvingFramebuffer(DeviceResources& resources, const Texture& samples,
                                           const Texture& target)
    : resources_(resources),
      handle_(makeFramebuffer(resources, samples.key(), {target.view(), samples.view()})) {}

ResolvingFramebuffer::~ResolvingFramebuffer() {
    vkDestroyFramebuffer(resources_.device.handle(), handle_, nullptr);
}

void Texture::destroy() {
    const VkDevice device = resources_.device.handle();
    vkDestroyFramebuffer(device, framebuffer_, nullptr);
    vkDestroyImageView(device, view_, nullptr);
    if (!isHosts_) vkDestroyImage(device, image_, nullptr);
    resources_.memory.free(memory_);
}

std::shared_ptr<Texture> TexturePool::acquire(const TextureKey& key) {
    const std::uint64_t completed = resources_->completedSerial;
    return ReusePool::acquire(
        [&](const Texture& idle) {
            return idle.key() == key && (!key.hostVisible || idle.lastUse <= completed);
        },
        [&] { return std::make_unique<Texture>(*resources_, key); });
}

HostBuffer::HostBuffer(DeviceResources& resources, VkDeviceSize size, VkBufferUsageFlags usage, bool readBack)
    : resources_(resources), size_(size) {
    const VkDevice device = resources_.device.handle();
    VkBufferCreateInfo info{VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO};
    info.size = size;
    info.usage = usage;
    buffer_ = created(vkCreateBuffer, device, info, "cannot create a buffer");
    try {
        VkMemoryRequirements needs;
        vkGetBufferMemoryRequirements(device, buffer_, &needs);
        // Uncached memory is slow to read, so read-back asks for cached where there is any.
        const bool cached = readBack && resources_.device.findMemoryType(
                                            needs.memoryTypeBits,
                                            kHostMemory | VK_MEMORY_PROPERTY_HOST_CACHED_BIT) != UINT32_MAX;
        memory_ = resources_.memory.allocate(
            needs, cached ? kHostMemory | VK_MEMORY_PROPERTY_HOST_CACHED_BIT : kHostMemory, true);
        check(vkBindBufferMemory(device, buffer_, memory_.memory, memory_.offset),
              "cannot bind buffer memory");
    } catch (...) {
        vkDestroyBuffer(device, buffer_, nullptr);
        resources_.memory.free(memory_);
        throw;
    }
}

HostBuffer::~HostBuffer() {
    vkDestroyBuffer(resources_.device.handle(), buffer_, nullptr);
    resources_.memory.free(memory_);
}

}  // namespace qv
