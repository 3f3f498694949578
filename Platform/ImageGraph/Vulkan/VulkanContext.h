#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "Platform/ImageGraph/MTIContext.h"
#include "Platform/ImageGraph/Planner.h"
#include "Platform/ImageGraph/Private/PassFuser.h"
#include "Platform/ImageGraph/Private/ResidentTextures.h"
#include "Platform/ImageGraph/Vulkan/Frame.h"
#include "Platform/ImageGraph/Vulkan/HostBufferPool.h"
#include "Platform/ImageGraph/Vulkan/PictureAtlas.h"
#include "Platform/ImageGraph/Vulkan/PipelineStore.h"
#include "Platform/ImageGraph/Vulkan/Texture.h"

namespace qv {

class VulkanContext final : public MTIContext, public std::enable_shared_from_this<VulkanContext> {
  public:
    /// Throws VulkanError.
    VulkanContext(std::shared_ptr<DeviceResources> resources, const MTIContextOptions& options);
    ~VulkanContext() override;

    const GraphicsDevice& device() const override { return resources_->device.info(); }
    const MTIContextOptions& options() const override { return options_; }
    std::unique_ptr<RenderTask> startRender(const MTIImage& image, const PixelBuffer& destination,
                                            std::string* error) override;
    std::unique_ptr<RenderTask> startRender(const MTIImage& image, std::string* error) override;
    std::unique_ptr<RenderTask> startRender(const MTIImage& image, const MTIVulkanImage& destination,
                                            const MTIVulkanSync& sync, std::string* error) override;
    Bitmap renderToBitmap(const MTIImage& image, std::string* error) override;
    std::vector<float> renderToFloats(const MTIImage& image, std::string* error) override;
    void prepare(const MTIImage& image, const PixelBuffer& destination) override;
    void prepare(const MTIImage& image, const MTIVulkanImage& destination) override;
    void prepare(const MTIImage& image) override;
    std::vector<std::string> validationMessages() const override {
        return resources_->device.validationMessages();
    }
    std::uint64_t allocatedBytes() const override { return resources_->memory.allocatedBytes(); }

    /// Pixels of one output texture for the host: in place, or copied to a buffer.
    struct HostPixels {
        std::shared_ptr<Texture> texture;
        std::shared_ptr<HostBuffer> buffer;
        const std::uint8_t* data() const { return buffer ? buffer->data() : texture->pixels(); }
        std::size_t rowBytes() const {
            return buffer ? std::size_t(texture->key().width) * std::size_t(texelBytes(texture->key().format))
                          : texture->rowBytes();
        }
    };

    /// A submitted render.
    struct Submission {
        Frame* frame = nullptr;
        std::uint64_t serial = 0;
        std::vector<HostPixels> outputs;
        RenderStatistics statistics;
    };

    /// Where the result of a render goes.
    enum class Delivery { stays, hostMemory, hostImage };

    /// Runs the stages of a planned render: take sources in, record the passes, deliver the outputs, submit.
    /// Throws VulkanError.
    Submission submit(RenderPlan plan, Delivery delivery, const MTIVulkanImage& destination = {},
                      const MTIVulkanSync& sync = {});

  private:
    /// Makes what the plan needs and draws it once. Throws RenderError.
    void warmUp(const MTIImage& image, const PlanTarget& target, Delivery delivery);

    /// As `planFused` for this context.
    RenderPlan planned(const MTIImage& image, PlanTarget target,
                       PassFuser::Missing missing = PassFuser::Missing::madeInBackground);

    struct Recording;
    void takeSourcesIn(Recording& recording);
    void recordPasses(Recording& recording);
    /// Passes into one target, the first and those that continue it.
    void recordTarget(Recording& recording, std::span<const PlanPass> passes);
    void recordPass(Recording& recording, const PlanPass& pass, VkRect2D area);
    void bindInputs(Recording& recording, const PlanPass& pass, const Pipeline& pipeline);
    /// For a pass with several samples of a pixel, whose mean `target` gets.
    VkFramebuffer resolvingFramebuffer(Recording& recording, const Texture& target, int samples);
    void drawOverlay(Recording& recording, const OverlayKind& kind, const OverlayLayout& layout,
                     TextureFormat format);
    /// The textures of a draw, at bindings 0…
    void bind(Recording& recording, const Pipeline& pipeline,
              std::span<const std::shared_ptr<Texture>> textures);
    void beginHostImages(Recording& recording, const MTIVulkanImage& destination);
    void finishHostImage(Recording& recording, const MTIVulkanImage& destination);
    void handToHost(Recording& recording, Submission& submission);
    std::shared_ptr<Texture> residentTexture(Recording& recording, const PlanTexture& wanted);
    /// Notes, once a frame was submitted, what it has filled.
    void keepResident(const Recording& recording) noexcept;
    std::shared_ptr<Texture> hostTexture(const PlanTexture& wanted, const MTIVulkanImage& image);
    void fill(Recording& recording, Texture& texture, const PlanTexture& wanted);

    static constexpr std::size_t kFramesInFlight = 3;

    MTIContextOptions options_;
    std::shared_ptr<DeviceResources> resources_;
    std::shared_ptr<TexturePool> textures_;
    std::shared_ptr<HostBufferPool> buffers_;
    PipelineStore pipelines_;
    std::unique_ptr<PassFuser> fuser_;
    PictureAtlas atlas_;
    std::array<std::unique_ptr<Frame>, kFramesInFlight> frames_;
    MTIImage blank_;        ///< stands for a nil input
    const bool processor_;  ///< take the ways that are fast on a processor
    std::mutex mutex_;
    std::uint64_t serial_ = 0;
    ResidentTextures residents_;
};

}  // namespace qv
