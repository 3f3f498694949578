#include "Platform/ImageGraph/Native/NativeContext.h"

#include <algorithm>

#include "Platform/ImageGraph/Native/NativeFrame.h"
#include "Platform/ImageGraph/Private/RenderRequest.h"
#include "Platform/ImageGraph/Private/SourcePixels.h"
#include "Platform/Media/PixelConversion.h"

namespace qv {

/// What the stages of one render share.
struct NativeContext::Recording {
    const RenderPlan& plan;
    const Destination& destination;
    NativeFrame& frame;
    std::vector<std::shared_ptr<NativeTexture>> textures;  ///< by the plan's index, while needed
    std::vector<BandedWork::Step> steps;
    std::shared_ptr<NativeTexture> scratch;  ///< of the pass that is being recorded

    bool isOutput(int texture) const {
        return std::ranges::find(plan.outputs, texture) != plan.outputs.end();
    }
    /// What hands rows of a texture over that is an output; empty where they stay.
    RowsWork deliveryOf(int texture, const NativeImage& image) const;
};

NativeContext::RowsWork NativeContext::Recording::deliveryOf(int texture, const NativeImage& image) const {
    const auto found = std::ranges::find(plan.outputs, texture);
    if (found == plan.outputs.end()) return {};
    const auto& [buffer, rows, rowBytes] = destination;
    const TextureFormat format = plan.textures[std::size_t(texture)].format;
    if (buffer && format == TextureFormat::rgba8) {
        return [image, buffer = buffer](int first, int end) {
            convertRowsFromRGBA8(image.pixels, std::size_t(image.rowBytes), buffer, first, end);
        };
    }
    PixelBuffer::Plane to{rows, rowBytes};
    if (buffer) to = buffer.plane(int(found - plan.outputs.begin()));
    if (!to.data) return {};
    const std::size_t bytes = std::size_t(image.width) * std::size_t(texelBytes(format));
    return [image, to, bytes](int first, int end) {
        copyRows(image.pixels + first * image.rowBytes, std::size_t(image.rowBytes),
                 to.data + std::size_t(first) * to.rowBytes, to.rowBytes, bytes, end - first);
    };
}

namespace {

std::uint64_t pixelBytes(const NativeTexture& texture) {
    return std::uint64_t(texture.image().width) * std::uint64_t(texture.image().height) *
           std::uint64_t(texelBytes(texture.format()));
}

}  // namespace

NativeContext::NativeContext(const NativeCompiler& compiler, NativeTarget target,
                             const MTIContextOptions& options, GraphicsDevice device)
    : options_(options),
      device_(std::move(device)),
      target_(target),
      textures_(std::make_shared<NativeTexturePool>(options.textureBudgetBytes)),
      limit_(std::make_shared<WorkLimit>(options.threads)),
      kernels_(compiler, target, options.shaderCacheDirectory),
      fuser_(std::make_unique<PassFuser>(kernels_, options.shaderCacheDirectory)),
      blank_(textures_->acquire(1, 1, TextureFormat::rgba8)) {
    fillRows(blank_->image(), TextureFormat::rgba8, {}, 0, 1);
}

NativeContext::~NativeContext() {
    fuser_.reset();  // waits for what is being compiled
    for (const auto& work : inFlight_) {
        if (work) quietly([&] { WorkerPool::shared().wait(*work); });
    }
}

RenderPlan NativeContext::planned(const MTIImage& image, PlanTarget target, PassFuser::Missing missing) {
    target.processor = target.native = true;
    return planFused(image, target, options_, *fuser_, missing);
}

NativeContext::Submission NativeContext::submit(const RenderPlan& plan, const Destination& destination) {
    std::scoped_lock lock(mutex_);
    const std::uint64_t serial = ++serial_;
    std::shared_ptr<BandedWork>& place = inFlight_[serial % kFramesInFlight];
    if (place) quietly([&] { WorkerPool::shared().wait(*place); });
    place.reset();

    const auto frame = std::make_shared<NativeFrame>(*textures_, serial, destination.buffer);
    const int texturesBefore = textures_->madeCount(), kernelsBefore = kernels_.madeCount();
    Recording recording{plan, destination, *frame, {}, {}, {}};
    recording.textures.resize(plan.textures.size());
    takeSourcesIn(recording);
    recording.steps.push_back({1, [&frame = *frame](int) { frame.begin(); }});
    for (std::size_t i = 0; i < plan.passes.size(); ++i) {
        recordPass(recording, plan.passes[i]);
        if (recording.scratch) frame->doneWith(std::move(recording.scratch));
        for (int input : plan.passes[i].inputs) {
            if (input < 0 || recording.isOutput(input)) continue;
            const PlanTexture& texture = plan.textures[std::size_t(input)];
            auto& held = recording.textures[std::size_t(input)];
            if (texture.lastReader == int(i) && !texture.source && held) frame->doneWith(std::move(held));
        }
    }
    recording.steps.push_back({1, [frame](int) { frame->finish(); }});
    frame->statistics.peakTextureBytes = peakTextureBytes(plan);
    frame->statistics.madeTextures = textures_->madeCount() - texturesBefore;
    frame->statistics.madePipelines = kernels_.madeCount() - kernelsBefore;
    Submission submission{frame, std::make_shared<BandedWork>(std::move(recording.steps), limit_)};
    WorkerPool::shared().start(submission.work);
    place = submission.work;
    textures_->trim(serial);
    return submission;
}

void NativeContext::takeSourcesIn(Recording& recording) {
    for (std::size_t i = 0; i < recording.plan.textures.size(); ++i) {
        const PlanTexture& wanted = recording.plan.textures[i];
        if (!wanted.source || wanted.lastReader < 0) continue;
        recording.textures[i] = residentTexture(wanted);
        recording.frame.keep(recording.textures[i]);
    }
}

std::shared_ptr<NativeTexture> NativeContext::residentTexture(const PlanTexture& wanted) {
    if (std::holds_alternative<VulkanImageSource>(wanted.source->operation))
        throw RenderError("a host's image needs a context on the host's device");
    auto texture = std::static_pointer_cast<NativeTexture>(residents_.find(*wanted.source, wanted.plane));
    if (!texture) {
        // Filled before the render starts: another one may read it at once.
        texture = textures_->acquire(wanted.width, wanted.height, wanted.format);
        writeSourcePixels(wanted, texture->image().pixels, std::size_t(texture->image().rowBytes), limit_);
        residents_.add(*wanted.source, wanted.plane, texture);
    }
    texture->lastUse = serial_;
    return texture;
}

void NativeContext::recordPass(Recording& recording, const PlanPass& pass) {
    const PlanTexture& wanted = recording.plan.textures[std::size_t(pass.output)];
    NativeFrame& frame = recording.frame;
    auto& output = recording.textures[std::size_t(pass.output)];
    output = frame.takeTexture(wanted.width, wanted.height, wanted.format);
    ++frame.statistics.passes;
    frame.statistics.bytesWritten += pixelBytes(*output);

    const NativeImage target = output->image();
    const RowsWork draw = drawingOf(recording, pass, target);
    const RowsWork deliver = recording.deliveryOf(pass.output, target);
    const NativeOverlays* const overlays = layOutOverlays(recording, pass, wanted);
    const auto work = [draw, overlays, deliver, target](int first, int end) {
        draw(first, end);
        // While the rows are near.
        if (overlays) overlays->draw(target, first, end);
        if (deliver) deliver(first, end);
    };
    recording.steps.push_back(stepOverRows(wanted.width, wanted.height, work));
}

const NativeOverlays* NativeContext::layOutOverlays(Recording& recording, const PlanPass& pass,
                                                    const PlanTexture& output) {
    if (pass.overlays.empty()) return nullptr;
    std::string cause;
    std::shared_ptr<const NativeOverlays> overlays =
        layOutNativeOverlays(pass, output, pictures_, target_, &cause);
    if (!overlays) throw RenderError(cause);
    recording.frame.keep(overlays);
    return overlays.get();
}

NativeContext::RowsWork NativeContext::drawingOf(Recording& recording, const PlanPass& pass,
                                                 const NativeImage& target) {
    if (pass.clearColor) {
        const TextureFormat format = recording.plan.textures[std::size_t(pass.output)].format;
        return [target, format, color = *pass.clearColor](int first, int end) {
            fillRows(target, format, color, first, end);
        };
    }
    NativeFrame& frame = recording.frame;
    NativeDraw& call = frame.addDraw();
    for (int input : pass.inputs) {
        const NativeTexture& texture = input < 0 ? *blank_ : *recording.textures[std::size_t(input)];
        call.inputs.push_back(texture.image());
        frame.statistics.bytesRead += pixelBytes(texture);
    }
    call.operation = nativeOperationFor(recording.plan, pass, target_);
    if (call.operation) return operationOf(recording, call, target);
    call.kernel = kernels_.kernel(pass.function, formatsOf(recording.plan, pass));
    call.words = pass.words;
    call.selectors = pass.selectors;
    call.arguments = {.words = call.words.data(),
                      .selectors = call.selectors.data(),
                      .resampled = pass.resampled,
                      .inputs = call.inputs.data(),
                      .target = target};
    return [&arguments = call.arguments, kernel = call.kernel->function()](int first, int end) {
        kernel(&arguments, first, end);
    };
}

NativeContext::RowsWork NativeContext::operationOf(Recording& recording, const NativeDraw& call,
                                                   const NativeImage& target) {
    constexpr std::size_t kScratchRow = 4096;
    const std::size_t rows = (call.operation->scratchBytes() + kScratchRow - 1) / kScratchRow;
    std::byte* memory = nullptr;
    if (rows > 0) {
        auto scratch = recording.frame.takeTexture(int(kScratchRow), int(rows), TextureFormat::r8);
        memory = reinterpret_cast<std::byte*>(scratch->image().pixels);
        recording.scratch = std::move(scratch);
    }
    const auto stage = [&call, target, memory](int number) {
        return [&call, target, memory, number](int first, int end) {
            call.operation->draw(number, call.inputs.data(), target, memory, first, end);
        };
    };
    const int last = call.operation->stageCount() - 1;
    for (int i = 0; i < last; ++i)
        recording.steps.push_back(stepOverRows(target.width, call.operation->rows(i), stage(i)));
    return stage(last);
}

}  // namespace qv
