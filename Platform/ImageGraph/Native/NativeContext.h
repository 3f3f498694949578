#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Platform/Foundation/WorkerPool.h"
#include "Platform/ImageGraph/MTIContext.h"
#include "Platform/ImageGraph/Native/KernelStore.h"
#include "Platform/ImageGraph/Native/NativeTexture.h"
#include "Platform/ImageGraph/Native/Overlays/NativeOverlays.h"
#include "Platform/ImageGraph/Private/PassFuser.h"
#include "Platform/ImageGraph/Private/ResidentTextures.h"

namespace qv {

class NativeFrame;
struct NativeDraw;

/// Renders on the processor's own instructions, with kernels that `compiler` makes of the shaders.
class NativeContext final : public MTIContext, public std::enable_shared_from_this<NativeContext> {
  public:
    /// The compiler outlives the context.
    NativeContext(const NativeCompiler& compiler, NativeTarget target, const MTIContextOptions& options,
                  GraphicsDevice device);
    ~NativeContext() override;

    const GraphicsDevice& device() const override { return device_; }
    const MTIContextOptions& options() const override { return options_; }
    std::unique_ptr<RenderTask> startRender(const MTIImage& image, const PixelBuffer& destination,
                                            std::string* error) override;
    std::unique_ptr<RenderTask> startRender(const MTIImage& image, std::string* error) override;
    /// A host's images lie on its Vulkan device: refused.
    std::unique_ptr<RenderTask> startRender(const MTIImage& image, const MTIVulkanImage& destination,
                                            const MTIVulkanSync& sync, std::string* error) override;
    Bitmap renderToBitmap(const MTIImage& image, std::string* error) override;
    std::vector<float> renderToFloats(const MTIImage& image, std::string* error) override;
    void prepare(const MTIImage& image, const PixelBuffer& destination) override;
    void prepare(const MTIImage& image, const MTIVulkanImage& destination) override;
    void prepare(const MTIImage& image) override;
    std::vector<std::string> validationMessages() const override { return {}; }
    std::uint64_t allocatedBytes() const override { return textures_->heldBytes() + bands_->heldBytes(); }

    /// Kernels compiled so far: not those found on disk.
    int compiledCount() const { return kernels_.compiledCount(); }

  private:
    /// A render under way.
    struct Submission {
        std::shared_ptr<NativeFrame> frame;
        std::shared_ptr<BandedWork> work;
    };
    /// Where the outputs go: a buffer, or the rows of one output in memory, or nowhere.
    struct Destination {
        PixelBuffer buffer = {};
        std::uint8_t* rows = nullptr;
        std::size_t rowBytes = 0;
    };
    class Task;
    struct Recording;

    RenderPlan planned(const MTIImage& image, PlanTarget target,
                       PassFuser::Missing missing = PassFuser::Missing::madeInBackground);
    /// Takes the sources in, starts the passes and returns. Throws RenderError.
    Submission submit(const RenderPlan& plan, const Destination& destination);
    void takeSourcesIn(Recording& recording);
    std::shared_ptr<NativeTexture> residentTexture(const PlanTexture& wanted);
    void recordPass(Recording& recording, const PlanPass& pass);
    /// What gives the pixels of a pass: a colour, an operation or a kernel.
    void choosePixels(Recording& recording, const PlanPass& pass, NativeDraw& draw);
    /// The steps that the operation of a pass takes before its rows are drawn.
    void recordStages(Recording& recording, NativeDraw& draw);
    /// What lies on top of the pass; nil when nothing does.
    const NativeOverlays* layOutOverlays(Recording& recording, const PlanPass& pass,
                                         const PlanTexture& output);

    std::unique_ptr<RenderTask> start(const MTIImage& image, const PlanTarget& target,
                                      const PixelBuffer& destination);
    /// Renders into rows of memory and waits.
    void renderNow(const MTIImage& image, TextureFormat format, std::uint8_t* rows, std::size_t rowBytes);
    /// Makes what the plan needs. Throws RenderError.
    void warmUp(const MTIImage& image, const PlanTarget& target);

    static constexpr std::size_t kFramesInFlight = 3;

    const MTIContextOptions options_;
    const GraphicsDevice device_;
    const NativeTarget target_;
    const std::shared_ptr<NativeTexturePool> textures_;
    const std::shared_ptr<NativeTexturePool> bands_;  ///< of pictures that lie in no texture
    const std::shared_ptr<WorkLimit> limit_;
    KernelStore kernels_;
    std::unique_ptr<PassFuser> fuser_;
    std::shared_ptr<NativeTexture> blank_;  ///< stands for a nil input
    std::mutex mutex_;                      ///< guards what follows
    std::uint64_t serial_ = 0;
    std::array<std::shared_ptr<BandedWork>, kFramesInFlight> inFlight_;
    ResidentTextures residents_;
    NativePictures pictures_;
};

}  // namespace qv
