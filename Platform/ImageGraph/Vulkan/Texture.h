#pragma once

#include <atomic>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>
#include <unordered_set>

#include "Platform/ImageGraph/Planner.h"
#include "Platform/ImageGraph/Vulkan/DeviceMemory.h"
#include "Platform/ImageGraph/Vulkan/VulkanDevice.h"
#include "Platform/ImageGraph/Vulkan/VulkanFunctions.h"

namespace qv {

VkFormat vulkanFormat(TextureFormat format);

class Texture;

/// Device, memory and the samplers and render passes that textures are used with.
struct DeviceResources {
    explicit DeviceResources(const MTIContextOptions& options);
    DeviceResources(const MTIVulkanDevice& host, const MTIContextOptions& options);
    ~DeviceResources();

    /// Destroys everything on the device and the device itself, unless it is a host's: also the textures that
    /// images still hold, which are empty from then on. The device must be idle.
    void close();
    void add(Texture& texture);
    void remove(Texture& texture);

    /// What a render pass does with its target besides drawing: how it finds it and how it leaves it.
    enum class TargetUse { sampled, hostVisible };
    /// With several samples its attachments are those and the target that gets their mean.
    /// What `clears` begins with a clear target; else with whatever it held.
    VkRenderPass renderPass(TextureFormat format, TargetUse use, int samples, bool clears = false);
    /// The fewest samples of a pixel that the device has and that are no fewer than wanted, or its most.
    VkSampleCountFlagBits sampleCount(int wanted) const;

    VulkanDevice device;
    DeviceMemory memory{device};
    VkSampler sampler = VK_NULL_HANDLE;  ///< linear, clamped
    bool hostTextures = false;           ///< a processor whose textures the host may read and write in place
    std::atomic<std::uint64_t> completedSerial{0};  ///< of the last submission that is known to have ended

  private:
    void setUp(const MTIContextOptions& options);

    std::mutex mutex_;
    std::map<std::tuple<TextureFormat, TargetUse, VkSampleCountFlagBits, bool>, VkRenderPass> renderPasses_;
    std::unordered_set<Texture*> textures_;
};

struct TextureKey {
    int width, height;
    TextureFormat format;
    bool hostVisible;  ///< linear and mapped; only where DeviceResources::hostTextures
    int samples = 1;   ///< of a pixel; with several it can only be drawn into
    bool operator==(const TextureKey&) const = default;
};

/// An image with its memory, view and framebuffer. Recorded into by one thread at a time.
class Texture {
  public:
    Texture(DeviceResources& resources, const TextureKey& key);
    /// A host's image.
    Texture(DeviceResources& resources, const TextureKey& key, const MTIVulkanImage& host);
    ~Texture();
    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;

    const TextureKey& key() const { return key_; }
    std::uint64_t bytes() const {
        return std::uint64_t(key_.width) * std::uint64_t(key_.height) *
               std::uint64_t(texelBytes(key_.format)) * std::uint64_t(key_.samples);
    }
    VkImage image() const { return image_; }
    VkImageView view() const { return view_; }
    VkFramebuffer framebuffer();
    /// First pixel and bytes of a row of a host-visible texture.
    std::uint8_t* pixels() const { return pixels_; }
    std::size_t rowBytes() const { return rowBytes_; }
    /// The layout in which shaders read it.
    VkImageLayout sampledLayout() const {
        return key_.hostVisible || layout == VK_IMAGE_LAYOUT_GENERAL
                   ? VK_IMAGE_LAYOUT_GENERAL
                   : VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL;
    }

    VkImageLayout layout = VK_IMAGE_LAYOUT_UNDEFINED;  ///< after what has been recorded so far
    std::uint64_t lastUse = 0;                         ///< serial of the last submission that uses it

  private:
    friend struct DeviceResources;
    void create();
    void createView();
    void destroy();

    DeviceResources& resources_;
    TextureKey key_;
    std::shared_ptr<void> hostOwner_;
    bool isHosts_ = false;
    VkImage image_ = VK_NULL_HANDLE;
    VkImageView view_ = VK_NULL_HANDLE;
    VkFramebuffer framebuffer_ = VK_NULL_HANDLE;
    MemoryRange memory_;
    std::uint8_t* pixels_ = nullptr;
    std::size_t rowBytes_ = 0;
};

/// Draws into a texture of several samples of a pixel and leaves their mean in another one of the same size
/// and format. Held by the frame that uses it.
class ResolvingFramebuffer {
  public:
    ResolvingFramebuffer(DeviceResources& resources, const Texture& samples, const Texture& target);
    ~ResolvingFramebuffer();
    ResolvingFramebuffer(const ResolvingFramebuffer&) = delete;
    ResolvingFramebuffer& operator=(const ResolvingFramebuffer&) = delete;
    VkFramebuffer handle() const { return handle_; }

  private:
    DeviceResources& resources_;
    VkFramebuffer handle_;
};

/// Textures for reuse, by size and format. A texture handed out comes back by itself when its last holder
/// lets go; holders may do so on any thread, also after the context is gone.
class TexturePool : public std::enable_shared_from_this<TexturePool> {
  public:
    TexturePool(std::shared_ptr<DeviceResources> resources, std::uint64_t budgetBytes)
        : resources_(std::move(resources)), budgetBytes_(budgetBytes) {}

    /// A texture whose old content is of no interest. One that the host will write is handed out only when
    /// the device is done with it.
    std::shared_ptr<Texture> acquire(const TextureKey& key);
    /// Frees idle textures above the budget, the longest unused first, and those that no frame has wanted for
    /// a while; sooner when frames have begun to want others, as after a change of size.
    void trim(std::uint64_t currentSerial);
    /// Textures made so far.
    int madeCount() const { return made_; }

  private:
    /// A texture keeps its place in a list while it is out, so that coming back takes no memory.
    using List = std::list<std::unique_ptr<Texture>>;
    void giveBack(List& one) noexcept;

    std::shared_ptr<DeviceResources> resources_;
    std::uint64_t budgetBytes_;
    std::atomic<int> made_{0};
    std::mutex mutex_;
    List idle_;  ///< most recently returned first
    std::uint64_t idleBytes_ = 0;
    int madeAtTrim_ = 0;         ///< textures made before the last `trim`
    std::uint64_t changed_ = 0;  ///< serial at which `trim` last found new ones
};

/// A host-visible buffer for staging, read-back and instance data.
class HostBuffer {
  public:
    HostBuffer(DeviceResources& resources, VkDeviceSize size, VkBufferUsageFlags usage,
               bool readBack = false);
    ~HostBuffer();
    HostBuffer(const HostBuffer&) = delete;
    HostBuffer& operator=(const HostBuffer&) = delete;

    VkBuffer handle() const { return buffer_; }
    std::uint8_t* data() const { return memory_.mapped; }
    VkDeviceSize size() const { return size_; }

  private:
    DeviceResources& resources_;
    VkBuffer buffer_ = VK_NULL_HANDLE;
    MemoryRange memory_;
    VkDeviceSize size_;
};

}  // namespace qv
