// The ways to ask a context for a render, and what becomes of its pixels.

#include <algorithm>
#include <cstring>

#include "Platform/ImageGraph/Vulkan/VulkanContext.h"
#include "Platform/Media/PixelConversion.h"

namespace qv {

namespace {

void copyRows(const VulkanContext::HostPixels& from, std::uint8_t* to, std::size_t toRowBytes) {
    const TextureKey& key = from.texture->key();
    qv::copyRows(from.data(), from.rowBytes(), to, toRowBytes,
                 std::size_t(key.width) * std::size_t(texelBytes(key.format)), key.height);
}

PlanTarget targetFor(const MTIImage& image, const MTIVulkanImage& destination) {
    if (!image) throw VulkanError("the image is nil");
    if (!destination.image) throw VulkanError("there is no destination");
    const auto format = textureFormatOfVulkan(destination.format);
    if (!format) throw VulkanError("the destination has a format that cannot be rendered into");
    checkSize(image, destination.width, destination.height);
    PlanTarget target;
    target.output = *format;
    return target;
}

class VulkanTask final : public RenderTask {
  public:
    VulkanTask(std::shared_ptr<VulkanContext> context, PixelBuffer destination)
        : context_(std::move(context)), destination_(std::move(destination)) {}

    /// A task is there before its render: one that was submitted is never without.
    VulkanContext::Submission& submission() { return submission_; }

    bool wait(std::string* error) override {
        if (done_) return true;
        try {
            submission_.frame->wait(submission_.serial);
            submission_.statistics.gpuMilliseconds = submission_.frame->milliseconds(submission_.serial);
            if (destination_) deliver();
        } catch (const std::exception& failure) {
            setError(error, failure);
            return false;
        }
        submission_.outputs.clear();
        done_ = true;
        return true;
    }

    const RenderStatistics& statistics() const override { return submission_.statistics; }

  private:
    void deliver() {
        const auto& outputs = submission_.outputs;
        if (outputs.front().texture->key().format == TextureFormat::rgba8) {
            convertFromRGBA8(outputs.front().data(), outputs.front().rowBytes(), destination_);
            return;
        }
        for (std::size_t plane = 0; plane < outputs.size(); ++plane) {
            copyRows(outputs[plane], destination_.plane(int(plane)).data,
                     destination_.plane(int(plane)).rowBytes);
        }
    }

    std::shared_ptr<VulkanContext> context_;
    VulkanContext::Submission submission_;
    PixelBuffer destination_;
    bool done_ = false;
};

}  // namespace

std::unique_ptr<RenderTask> VulkanContext::startRender(const MTIImage& image, const PixelBuffer& destination,
                                                       std::string* error) {
    try {
        auto task = std::make_unique<VulkanTask>(shared_from_this(), destination);
        task->submission() =
            submit(planned(image, targetFor(image, destination, processor_)), Delivery::hostMemory);
        return task;
    } catch (const std::exception& failure) {
        setError(error, failure);
        return nullptr;
    }
}

std::unique_ptr<RenderTask> VulkanContext::startRender(const MTIImage& image, std::string* error) {
    try {
        auto task = std::make_unique<VulkanTask>(shared_from_this(), PixelBuffer());
        task->submission() = submit(planned(image, {}), Delivery::stays);
        return task;
    } catch (const std::exception& failure) {
        setError(error, failure);
        return nullptr;
    }
}

std::unique_ptr<RenderTask> VulkanContext::startRender(const MTIImage& image,
                                                       const MTIVulkanImage& destination,
                                                       const MTIVulkanSync& sync, std::string* error) {
    try {
        auto task = std::make_unique<VulkanTask>(shared_from_this(), PixelBuffer());
        task->submission() =
            submit(planned(image, targetFor(image, destination)), Delivery::hostImage, destination, sync);
        return task;
    } catch (const std::exception& failure) {
        setError(error, failure);
        return nullptr;
    }
}

Bitmap VulkanContext::renderToBitmap(const MTIImage& image, std::string* error) {
    try {
        const Submission submission = submit(planned(image, {}), Delivery::hostMemory);
        submission.frame->wait(submission.serial);
        const HostPixels& output = submission.outputs.front();
        Bitmap bitmap{output.texture->key().width, output.texture->key().height, nullptr};
        auto pixels =
            std::make_shared<std::vector<std::uint8_t>>(bitmap.rowBytes() * std::size_t(bitmap.height));
        copyRows(output, pixels->data(), bitmap.rowBytes());
        bitmap.pixels = std::move(pixels);
        return bitmap;
    } catch (const std::exception& failure) {
        setError(error, failure);
        return {};
    }
}

std::vector<float> VulkanContext::renderToFloats(const MTIImage& image, std::string* error) {
    try {
        PlanTarget target;
        target.output = TextureFormat::rgba32Float;
        const Submission submission = submit(planned(image, target), Delivery::hostMemory);
        submission.frame->wait(submission.serial);
        const HostPixels& output = submission.outputs.front();
        const std::size_t rowFloats = std::size_t(output.texture->key().width) * 4;
        std::vector<float> floats(rowFloats * std::size_t(output.texture->key().height));
        copyRows(output, reinterpret_cast<std::uint8_t*>(floats.data()), rowFloats * sizeof(float));
        return floats;
    } catch (const std::exception& failure) {
        setError(error, failure);
        return {};
    }
}

void VulkanContext::warmUp(const MTIImage& image, const PlanTarget& target, Delivery delivery) {
    planned(image, target, PassFuser::Missing::madeNow);
    // Drivers compile at the first draw, so the way to warm a pipeline is to draw with it.
    const Submission submission = submit(planned(image, target), delivery);
    submission.frame->wait(submission.serial);
}

void VulkanContext::prepare(const MTIImage& image, const PixelBuffer& destination) {
    quietly([&] { warmUp(image, targetFor(image, destination, processor_), Delivery::hostMemory); });
}

void VulkanContext::prepare(const MTIImage& image, const MTIVulkanImage& destination) {
    quietly([&] { warmUp(image, targetFor(image, destination), Delivery::stays); });
}

void VulkanContext::prepare(const MTIImage& image) {
    quietly([&] { warmUp(image, {}, Delivery::stays); });
}

}  // namespace qv
