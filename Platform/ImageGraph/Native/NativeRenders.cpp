// The ways to ask a native context for a render, and what becomes of its pixels.

#include "Platform/ImageGraph/Native/NativeContext.h"
#include "Platform/ImageGraph/Native/NativeFrame.h"
#include "Platform/ImageGraph/Private/RenderRequest.h"

namespace qv {

class NativeContext::Task final : public RenderTask {
  public:
    Task(std::shared_ptr<NativeContext> context, Submission submission)
        : context_(std::move(context)), submission_(std::move(submission)) {}

    bool wait(std::string* error) override {
        try {
            WorkerPool::shared().wait(*submission_.work);
            return true;
        } catch (const std::exception& failure) {
            setError(error, failure);
            return false;
        }
    }

    const RenderStatistics& statistics() const override { return submission_.frame->statistics; }

  private:
    std::shared_ptr<NativeContext> context_;
    Submission submission_;
};

namespace {

/// What `work` gives, or nothing with the cause in `error`.
template <typename Work>
auto reported(std::string* error, Work&& work) -> decltype(work()) {
    try {
        return work();
    } catch (const std::exception& failure) {
        setError(error, failure);
        return {};
    }
}

}  // namespace

std::unique_ptr<RenderTask> NativeContext::start(const MTIImage& image, const PlanTarget& target,
                                                 const PixelBuffer& destination) {
    return std::make_unique<Task>(shared_from_this(), submit(planned(image, target), {destination}));
}

std::unique_ptr<RenderTask> NativeContext::startRender(const MTIImage& image, const PixelBuffer& destination,
                                                       std::string* error) {
    return reported(error, [&] { return start(image, targetFor(image, destination, true), destination); });
}

std::unique_ptr<RenderTask> NativeContext::startRender(const MTIImage& image, std::string* error) {
    return reported(error, [&] { return start(image, {}, {}); });
}

std::unique_ptr<RenderTask> NativeContext::startRender(const MTIImage&, const MTIVulkanImage&,
                                                       const MTIVulkanSync&, std::string* error) {
    setError(error, RenderError("a host's image needs a context on the host's device"));
    return nullptr;
}

void NativeContext::renderNow(const MTIImage& image, TextureFormat format, std::uint8_t* rows,
                              std::size_t rowBytes) {
    PlanTarget target;
    target.output = format;
    const Submission submission = submit(planned(image, target), {{}, rows, rowBytes});
    WorkerPool::shared().wait(*submission.work);
}

Bitmap NativeContext::renderToBitmap(const MTIImage& image, std::string* error) {
    return reported(error, [&] {
        Bitmap bitmap{int(image.size().width), int(image.size().height), nullptr};
        const auto pixels =
            std::make_shared<std::vector<std::uint8_t>>(bitmap.rowBytes() * std::size_t(bitmap.height));
        renderNow(image, TextureFormat::rgba8, pixels->data(), bitmap.rowBytes());
        bitmap.pixels = pixels;
        return bitmap;
    });
}

std::vector<float> NativeContext::renderToFloats(const MTIImage& image, std::string* error) {
    return reported(error, [&] {
        const std::size_t rowFloats = std::size_t(image.size().width) * 4;
        std::vector<float> floats(rowFloats * std::size_t(image.size().height));
        renderNow(image, TextureFormat::rgba32Float, reinterpret_cast<std::uint8_t*>(floats.data()),
                  rowFloats * sizeof(float));
        return floats;
    });
}

void NativeContext::warmUp(const MTIImage& image, const PlanTarget& target) {
    const RenderPlan plan = planned(image, target, PassFuser::Missing::madeNow);
    for (const PlanPass& pass : plan.passes) {
        if (!pass.clearColor && !nativeOperationFor(plan, pass, target_))
            kernels_.makeFor(pass, formatsOf(plan, pass));
    }
}

void NativeContext::prepare(const MTIImage& image, const PixelBuffer& destination) {
    quietly([&] { warmUp(image, targetFor(image, destination, true)); });
}

void NativeContext::prepare(const MTIImage&, const MTIVulkanImage&) {}

void NativeContext::prepare(const MTIImage& image) {
    quietly([&] { warmUp(image, {}); });
}

}  // namespace qv
