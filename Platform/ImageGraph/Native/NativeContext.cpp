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
    /// Whether a source that is not there is read once, at the place being drawn: by this input.
    bool isReadInBands(const PlanPass& pass, std::size_t input) const;
    /// The texture of an input, taken in first where it is a source that is not there.
    NativeImage inputOf(int texture);
    /// What hands rows of a texture over that is an output; empty where they stay.
    NativeDraw::Delivery deliveryOf(int texture) const;
};

bool NativeContext::Recording::isReadInBands(const PlanPass& pass, std::size_t input) const {
    const int texture = pass.inputs[input];
    const auto& function = *pass.function;
    const bool isHere =
        input < function.inputs.size() && function.readsOnlyHere(input) && !(pass.resampled >> input & 1);
    if (!isHere || textures[std::size_t(texture)] || !plan.textures[std::size_t(texture)].source)
        return false;
    std::ptrdiff_t readers = 0;
    for (const PlanPass& reader : plan.passes) readers += std::ranges::count(reader.inputs, texture);
    return readers == 1;
}

NativeImage NativeContext::Recording::inputOf(int texture) {
    const PlanTexture& wanted = plan.textures[std::size_t(texture)];
    auto& held = textures[std::size_t(texture)];
    if (!held) {
        held = frame.takeTexture(wanted.width, wanted.height, wanted.format);
        const auto convert = [wanted, image = held->image()](int first, int end) {
            writeSourceRows(wanted, image.pixels, std::size_t(image.rowBytes), first, end);
        };
        steps.push_back(stepOverRows(wanted.width, wanted.height, convert));
    }
    return held->image();
}

NativeDraw::Delivery NativeContext::Recording::deliveryOf(int texture) const {
    const auto found = std::ranges::find(plan.outputs, texture);
    if (found == plan.outputs.end()) return {};
    const TextureFormat format = plan.textures[std::size_t(texture)].format;
    const PixelBuffer& buffer = frame.destination();
    if (buffer && format == TextureFormat::rgba8) {
        return [&buffer](const NativeImage& image, int first, int end) {
            convertRowsFromRGBA8(image.pixels, std::size_t(image.rowBytes), buffer, first, end);
        };
    }
    PixelBuffer::Plane to{destination.rows, destination.rowBytes};
    if (buffer) to = buffer.plane(int(found - plan.outputs.begin()));
    if (!to.data) return {};
    return [to, bytes = std::size_t(texelBytes(format))](const NativeImage& image, int first, int end) {
        copyRows(image.pixels + first * image.rowBytes, std::size_t(image.rowBytes),
                 to.data + std::size_t(first) * to.rowBytes, to.rowBytes, bytes * std::size_t(image.width),
                 end - first);
    };
}

namespace {

std::uint64_t pixelBytes(const PlanTexture& texture) {
    return std::uint64_t(texture.width) * std::uint64_t(texture.height) *
           std::uint64_t(texelBytes(texture.format));
}

/// Whether its texture stays for the next renders. What is converted is mostly a frame of a clip, seen once.
bool isResident(const PlanTexture& texture) {
    return texture.source && !isConverted(texture);
}

}  // namespace

NativeContext::NativeContext(const NativeCompiler& compiler, NativeTarget target,
                             const MTIContextOptions& options, GraphicsDevice device)
    : options_(options),
      device_(std::move(device)),
      target_(target),
      textures_(std::make_shared<NativeTexturePool>(options.textureBudgetBytes)),
      bands_(std::make_shared<NativeTexturePool>(options.textureBudgetBytes)),
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
            if (texture.lastReader == int(i) && !isResident(texture) && held)
                frame->doneWith(std::move(held));
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
    bands_->trim(serial);
    return submission;
}

void NativeContext::takeSourcesIn(Recording& recording) {
    for (std::size_t i = 0; i < recording.plan.textures.size(); ++i) {
        const PlanTexture& wanted = recording.plan.textures[i];
        if (!wanted.source || wanted.lastReader < 0) continue;
        if (isResident(wanted)) {
            recording.textures[i] = residentTexture(wanted);
            recording.frame.keep(recording.textures[i]);
        } else {
            recording.frame.keep(wanted.source->shared_from_this());
        }
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
    ++frame.statistics.passes;
    frame.statistics.bytesWritten += pixelBytes(wanted);

    NativeDraw& draw = frame.addDraw();
    draw.bands = bands_.get();
    draw.serial = serial_;
    draw.bandRows = bandRowsOf(wanted.width, wanted.height);
    draw.deliver = recording.deliveryOf(pass.output);
    draw.target = {nullptr, 0, wanted.width, wanted.height};
    draw.format = wanted.format;
    const bool isOnlyHandedOver = draw.deliver && wanted.lastReader < 0;
    if (!isOnlyHandedOver) {
        auto& output = recording.textures[std::size_t(pass.output)];
        output = frame.takeTexture(wanted.width, wanted.height, wanted.format);
        draw.target = output->image();
    }
    draw.overlays = layOutOverlays(recording, pass, wanted);
    choosePixels(recording, pass, draw);
    recording.steps.push_back(
        stepOverRows(wanted.width, wanted.height, [&draw](int first, int end) { draw.draw(first, end); }));
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

void NativeContext::choosePixels(Recording& recording, const PlanPass& pass, NativeDraw& draw) {
    draw.color = pass.clearColor;
    if (draw.color) return;
    for (std::size_t i = 0; i < pass.inputs.size(); ++i) {
        if (pass.inputs[i] < 0) {
            draw.inputs.push_back(blank_->image());
            continue;
        }
        const PlanTexture& input = recording.plan.textures[std::size_t(pass.inputs[i])];
        recording.frame.statistics.bytesRead += pixelBytes(input);
        if (recording.isReadInBands(pass, i)) {
            draw.inputs.push_back({nullptr, 0, input.width, input.height});
            draw.bandSources.push_back({i, input});
        } else {
            draw.inputs.push_back(recording.inputOf(pass.inputs[i]));
        }
    }
    draw.operation = nativeOperationFor(recording.plan, pass, target_);
    if (draw.operation) {
        recordStages(recording, draw);
        return;
    }
    draw.kernel = kernels_.kernel(pass.function, formatsOf(recording.plan, pass));
    draw.words = pass.words;
    draw.selectors = pass.selectors;
    draw.resampled = pass.resampled;
}

void NativeContext::recordStages(Recording& recording, NativeDraw& draw) {
    constexpr std::size_t kScratchRow = 4096;
    const NativeOperation& operation = *draw.operation;
    const std::size_t rows = (operation.scratchBytes() + kScratchRow - 1) / kScratchRow;
    if (rows > 0) {
        recording.scratch = recording.frame.takeTexture(int(kScratchRow), int(rows), TextureFormat::r8);
        draw.scratch = reinterpret_cast<std::byte*>(recording.scratch->image().pixels);
    }
    for (int stage = 0; stage + 1 < operation.stageCount(); ++stage) {
        recording.steps.push_back(
            stepOverRows(draw.target.width, operation.rows(stage),
                         [&draw, stage](int first, int end) { draw.drawStage(stage, first, end); }));
    }
}

}  // namespace qv
