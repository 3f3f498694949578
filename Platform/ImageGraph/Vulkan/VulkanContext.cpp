#include "Platform/ImageGraph/Vulkan/VulkanContext.h"

#include <algorithm>
#include <cstring>

#include "Platform/ImageGraph/Private/SourcePixels.h"

namespace qv {

namespace {

void imageBarrier(VkCommandBuffer commands, Frame& frame, Texture& texture, VkImageLayout layout,
                  VkPipelineStageFlags before, VkAccessFlags written, VkPipelineStageFlags after,
                  VkAccessFlags next) {
    VkImageMemoryBarrier info{VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER};
    info.srcAccessMask = written;
    info.dstAccessMask = next;
    info.oldLayout = texture.layout;
    info.newLayout = layout;
    info.srcQueueFamilyIndex = info.dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    info.image = texture.image();
    info.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, VK_REMAINING_MIP_LEVELS, 0, 1};
    vkCmdPipelineBarrier(commands, before, after, 0, 0, nullptr, 0, nullptr, 1, &info);
    frame.setLayout(texture, layout);
}

VkBufferImageCopy wholeImage(const Texture& texture) {
    VkBufferImageCopy copy{};
    copy.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1};
    copy.imageExtent = {std::uint32_t(texture.key().width), std::uint32_t(texture.key().height), 1};
    return copy;
}

}  // namespace

/// What the stages of one render share.
struct VulkanContext::Recording {
    RenderPlan plan;
    Delivery delivery;
    Frame& frame;
    VkCommandBuffer commands;
    std::uint64_t serial;
    std::vector<std::shared_ptr<Texture>> textures;  ///< by the plan's index, while needed
    std::shared_ptr<Texture> destination;            ///< a host's image to render into
    std::shared_ptr<Texture> blank;                  ///< stands for nil inputs
    /// Textures that this frame fills: not to be read by another before this one was submitted.
    struct Filled {
        const ImageNode* node;
        int plane;
        std::shared_ptr<Texture> texture;
    };
    std::vector<Filled> filled;
    RenderStatistics statistics;

    Texture& texture(int index) { return *textures[std::size_t(index)]; }
    bool isOutput(int index) const {
        return std::find(plan.outputs.begin(), plan.outputs.end(), index) != plan.outputs.end();
    }
};

VulkanContext::VulkanContext(std::shared_ptr<DeviceResources> resources, const MTIContextOptions& options)
    : options_(options),
      resources_(std::move(resources)),
      textures_(std::make_shared<TexturePool>(resources_, options.textureBudgetBytes)),
      buffers_(std::make_shared<HostBufferPool>(resources_, options.textureBudgetBytes)),
      pipelines_(*resources_),
      fuser_(std::make_unique<PassFuser>(pipelines_, options.shaderCacheDirectory)),
      atlas_(*resources_, textures_),
      processor_(resources_->device.info().isProcessor && !options.gpuPaths) {
    for (auto& frame : frames_) frame = std::make_unique<Frame>(*resources_);
    blank_ = MTIImage::imageWithBitmap({1, 1, std::make_shared<const std::vector<std::uint8_t>>(4, 0)});
}

VulkanContext::~VulkanContext() {
    fuser_.reset();                             // waits for what is being compiled
    for (auto& frame : frames_) frame.reset();  // waits for what is running
    residents_.clear();
    buffers_.reset();
    pipelines_.clear();
    resources_->close();
}

RenderPlan VulkanContext::planned(const MTIImage& image, PlanTarget target, PassFuser::Missing missing) {
    target.processor = processor_;
    return planFused(image, target, options_, *fuser_, missing);
}

VulkanContext::Submission VulkanContext::submit(RenderPlan plan, Delivery delivery,
                                                const MTIVulkanImage& destination,
                                                const MTIVulkanSync& sync) {
    std::scoped_lock lock(mutex_);
    const std::uint64_t serial = ++serial_;
    Frame& frame = *frames_[serial % kFramesInFlight];
    const VkCommandBuffer commands = frame.begin();
    Submission submission{&frame, serial, {}, {}};
    const int texturesBefore = textures_->madeCount(), pipelinesBefore = pipelines_.madeCount();
    try {
        Recording recording{std::move(plan), delivery, frame, commands, serial, {}, {}, {}, {}};
        recording.textures.resize(recording.plan.textures.size());
        atlas_.begin(commands, frame);
        beginHostImages(recording, destination);
        takeSourcesIn(recording);
        recordPasses(recording);
        if (delivery == Delivery::hostImage)
            finishHostImage(recording, destination);
        else
            handToHost(recording, submission);
        submission.statistics = recording.statistics;
        submission.statistics.peakTextureBytes = peakTextureBytes(recording.plan);
        submission.statistics.madeTextures = textures_->madeCount() - texturesBefore;
        submission.statistics.madePipelines = pipelines_.madeCount() - pipelinesBefore;
        frame.submit(serial, sync);
        keepResident(recording);
        atlas_.keep();
    } catch (...) {
        frame.abandon();
        atlas_.abandon();
        throw;
    }
    textures_->trim(serial);
    pipelines_.trim(serial);
    return submission;
}

void VulkanContext::takeSourcesIn(Recording& recording) {
    for (std::size_t i = 0; i < recording.plan.textures.size(); ++i) {
        const PlanTexture& wanted = recording.plan.textures[i];
        if (!wanted.source || wanted.lastReader < 0) continue;
        recording.textures[i] = residentTexture(recording, wanted);
    }
    const bool anyNil = std::ranges::any_of(recording.plan.passes, [](const PlanPass& pass) {
        return std::ranges::find(pass.inputs, -1) != pass.inputs.end();
    });
    if (anyNil)
        recording.blank = residentTexture(recording, {1, 1, TextureFormat::rgba8, blank_.node().get()});
}

std::shared_ptr<Texture> VulkanContext::hostTexture(const PlanTexture& wanted, const MTIVulkanImage& image) {
    const TextureKey key{wanted.width, wanted.height, wanted.format, false};
    // A node that reads the image may outlive the context.
    return {new Texture(*resources_, key, image),
            [resources = resources_](Texture* texture) { delete texture; }};
}

std::shared_ptr<Texture> VulkanContext::residentTexture(Recording& recording, const PlanTexture& wanted) {
    auto texture = std::static_pointer_cast<Texture>(residents_.find(*wanted.source, wanted.plane));
    if (!texture) {
        if (const auto* host = std::get_if<VulkanImageSource>(&wanted.source->operation)) {
            texture = hostTexture(wanted, host->image);
        } else {
            const bool inPlace = resources_->hostTextures && wanted.format == TextureFormat::rgba8;
            texture = textures_->acquire({wanted.width, wanted.height, wanted.format, inPlace});
            fill(recording, *texture, wanted);
        }
        recording.filled.push_back({wanted.source, wanted.plane, texture});
    }
    texture->lastUse = recording.serial;
    // The node may let go of it while the device still reads it.
    recording.frame.keepAlive.push_back(texture);
    return texture;
}

void VulkanContext::keepResident(const Recording& recording) noexcept {
    for (const Recording::Filled& filled : recording.filled)
        residents_.add(*filled.node, filled.plane, filled.texture);
}

void VulkanContext::fill(Recording& recording, Texture& texture, const PlanTexture& wanted) {
    if (texture.key().hostVisible) {
        writeSourcePixels(wanted, texture.pixels(), texture.rowBytes());
        if (texture.layout != VK_IMAGE_LAYOUT_GENERAL) {
            imageBarrier(recording.commands, recording.frame, texture, VK_IMAGE_LAYOUT_GENERAL,
                         VK_PIPELINE_STAGE_HOST_BIT, VK_ACCESS_HOST_WRITE_BIT,
                         VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT, VK_ACCESS_SHADER_READ_BIT);
        }
        return;
    }
    const std::size_t rowBytes = std::size_t(wanted.width) * std::size_t(texelBytes(wanted.format));
    const auto staging = buffers_->acquire(rowBytes * std::size_t(wanted.height));
    writeSourcePixels(wanted, staging->data(), rowBytes);
    recording.frame.keepAlive.push_back(staging);
    recording.frame.setLayout(texture, VK_IMAGE_LAYOUT_UNDEFINED);
    imageBarrier(recording.commands, recording.frame, texture, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL,
                 VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT | VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT |
                     VK_PIPELINE_STAGE_TRANSFER_BIT,
                 VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT | VK_ACCESS_TRANSFER_WRITE_BIT,
                 VK_PIPELINE_STAGE_TRANSFER_BIT, VK_ACCESS_TRANSFER_WRITE_BIT);
    const VkBufferImageCopy copy = wholeImage(texture);
    vkCmdCopyBufferToImage(recording.commands, staging->handle(), texture.image(),
                           VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL, 1, &copy);
    imageBarrier(recording.commands, recording.frame, texture, VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL,
                 VK_PIPELINE_STAGE_TRANSFER_BIT, VK_ACCESS_TRANSFER_WRITE_BIT,
                 VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT, VK_ACCESS_SHADER_READ_BIT);
}

void VulkanContext::recordPasses(Recording& recording) {
    const auto& passes = recording.plan.passes;
    for (std::size_t i = 0, end = 0; i < passes.size(); i = end) {
        for (end = i + 1; end < passes.size() && passes[end].continues;) ++end;
        recordTarget(recording, std::span(passes).subspan(i, end - i));
        // A texture goes back to the pool when its last reader is recorded: later passes may write it again.
        for (; i < end; ++i) {
            for (int input : passes[i].inputs) {
                if (input < 0 || recording.isOutput(input)) continue;
                if (recording.plan.textures[std::size_t(input)].lastReader == int(i))
                    recording.textures[std::size_t(input)].reset();
            }
        }
    }
}

void VulkanContext::recordTarget(Recording& recording, std::span<const PlanPass> passes) {
    const PlanPass& pass = passes.front();
    const PlanTexture& wanted = recording.plan.textures[std::size_t(pass.output)];
    const bool inPlace =
        recording.delivery == Delivery::hostMemory && resources_->hostTextures &&
        recording.isOutput(pass.output) &&
        (wanted.format == TextureFormat::rgba8 || wanted.format == TextureFormat::rgba16Float);
    auto& texture = recording.textures[std::size_t(pass.output)];
    texture = recording.destination && recording.isOutput(pass.output)
                  ? recording.destination
                  : textures_->acquire({wanted.width, wanted.height, wanted.format, inPlace});
    texture->lastUse = recording.serial;

    // Before the render pass, in which nothing can be uploaded.
    std::vector<OverlayLayout> overlays;
    for (const PlanPass& each : passes) {
        for (const PassOverlay* overlay : each.overlays)
            overlays.push_back(overlay->layOut(wanted.width, wanted.height, atlas_));
    }

    const VkCommandBuffer commands = recording.commands;
    const auto use = inPlace ? DeviceResources::TargetUse::hostVisible : DeviceResources::TargetUse::sampled;
    const VkRect2D area{{0, 0}, {std::uint32_t(wanted.width), std::uint32_t(wanted.height)}};
    const VkViewport viewport{0, 0, float(wanted.width), float(wanted.height), 0, 1};
    VkRenderPassBeginInfo begin{VK_STRUCTURE_TYPE_RENDER_PASS_BEGIN_INFO};
    begin.renderPass = resources_->renderPass(wanted.format, use, pass.samples, pass.clearColor.has_value());
    begin.framebuffer =
        pass.samples > 1 ? resolvingFramebuffer(recording, *texture, pass.samples) : texture->framebuffer();
    begin.renderArea = area;
    VkClearValue clearValues[2]{};  // the second one is the samples'
    if (pass.clearColor) {
        for (VkClearValue& value : clearValues) std::ranges::copy(*pass.clearColor, value.color.float32);
        begin.clearValueCount = 2;
        begin.pClearValues = clearValues;
    }
    vkCmdBeginRenderPass(commands, &begin, VK_SUBPASS_CONTENTS_INLINE);
    vkCmdSetViewport(commands, 0, 1, &viewport);
    auto overlay = overlays.begin();
    for (const PlanPass& each : passes) {
        if (!each.clearColor) recordPass(recording, each, area);
        vkCmdSetScissor(commands, 0, 1, &area);
        for (const PassOverlay* drawn : each.overlays)
            drawOverlay(recording, drawn->kind(), *overlay++, wanted.format);
    }
    vkCmdEndRenderPass(commands);
    recording.frame.setLayout(*texture,
                              inPlace ? VK_IMAGE_LAYOUT_GENERAL : VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL);
    ++recording.statistics.passes;
    recording.statistics.bytesWritten += texture->bytes();
}

void VulkanContext::recordPass(Recording& recording, const PlanPass& pass, VkRect2D area) {
    const VkCommandBuffer commands = recording.commands;
    Pipeline& pipeline =
        pipelines_.fullScreen(pass, recording.plan.textures[std::size_t(pass.output)].format);
    pipeline.lastUse = recording.serial;
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline.handle);
    bindInputs(recording, pass, pipeline);
    vkCmdPushConstants(commands, pipeline.layout, VK_SHADER_STAGE_VERTEX_BIT, 0, pipeline.slots * 16,
                       pass.words.data());
    std::vector<VkRect2D> scissors;
    for (const PixelRect& part : pass.parts)
        scissors.push_back({{part.x, part.y}, {std::uint32_t(part.width), std::uint32_t(part.height)}});
    if (scissors.empty()) scissors = {area};
    for (const VkRect2D& scissor : scissors) {
        vkCmdSetScissor(commands, 0, 1, &scissor);
        vkCmdDraw(commands, 3, 1, 0, 0);
    }
}

VkFramebuffer VulkanContext::resolvingFramebuffer(Recording& recording, const Texture& target, int samples) {
    TextureKey key = target.key();
    key.hostVisible = false;
    key.samples = samples;
    const auto texture = textures_->acquire(key);
    texture->lastUse = recording.serial;
    const auto framebuffer = std::make_shared<ResolvingFramebuffer>(*resources_, *texture, target);
    recording.frame.keepAlive.push_back(framebuffer);
    return framebuffer->handle();
}

void VulkanContext::drawOverlay(Recording& recording, const OverlayKind& kind, const OverlayLayout& layout,
                                TextureFormat format) {
    if (layout.draws.empty()) return;
    const VkCommandBuffer commands = recording.commands;
    const std::size_t bytes = layout.instances.size() * sizeof(float);
    // The validation layer takes a draw to read as many of them as it has vertices.
    const std::size_t perInstance = std::size_t(kind.style.instanceVectors) * 16;
    const auto instances = buffers_->acquire(std::max(bytes, perInstance * std::size_t(kind.vertices)));
    if (bytes > 0) std::memcpy(instances->data(), layout.instances.data(), bytes);
    recording.frame.keepAlive.push_back(instances);
    Pipeline& pipeline = pipelines_.overlay(kind, format);
    pipeline.lastUse = recording.serial;
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline.handle);
    const VkBuffer buffer = instances->handle();
    const VkDeviceSize offset = 0;
    vkCmdBindVertexBuffers(commands, 0, 1, &buffer, &offset);
    for (const OverlayLayout::Draw& draw : layout.draws) {
        std::vector<std::shared_ptr<Texture>> textures;
        for (const auto& handle : draw.textures) {
            const auto& texture = textures.emplace_back(std::static_pointer_cast<Texture>(handle));
            texture->lastUse = recording.serial;
            recording.frame.keepAlive.push_back(texture);
        }
        bind(recording, pipeline, textures);
        vkCmdDraw(commands, std::uint32_t(kind.vertices), draw.count, 0, draw.first);
    }
}

void VulkanContext::bindInputs(Recording& recording, const PlanPass& pass, const Pipeline& pipeline) {
    std::vector<std::shared_ptr<Texture>> inputs;
    for (int index : pass.inputs) {
        inputs.push_back(index >= 0 ? recording.textures[std::size_t(index)] : recording.blank);
        recording.statistics.bytesRead += inputs.back()->bytes();
    }
    bind(recording, pipeline, inputs);
}

void VulkanContext::bind(Recording& recording, const Pipeline& pipeline,
                         std::span<const std::shared_ptr<Texture>> textures) {
    if (textures.empty()) return;
    const VkDescriptorSet set = recording.frame.allocateSet(pipeline.setLayout);
    std::vector<VkDescriptorImageInfo> images(textures.size());
    std::vector<VkWriteDescriptorSet> writes(textures.size());
    for (std::size_t i = 0; i < textures.size(); ++i) {
        images[i] = {resources_->sampler, textures[i]->view(), textures[i]->sampledLayout()};
        writes[i].sType = VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET;
        writes[i].dstSet = set;
        writes[i].dstBinding = std::uint32_t(i);
        writes[i].descriptorCount = 1;
        writes[i].descriptorType = VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER;
        writes[i].pImageInfo = &images[i];
    }
    vkUpdateDescriptorSets(resources_->device.handle(), std::uint32_t(writes.size()), writes.data(), 0,
                           nullptr);
    vkCmdBindDescriptorSets(recording.commands, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline.layout, 0, 1, &set,
                            0, nullptr);
}

void VulkanContext::beginHostImages(Recording& recording, const MTIVulkanImage& destination) {
    const auto& textures = recording.plan.textures;
    const bool reads = std::any_of(textures.begin(), textures.end(), [](const PlanTexture& texture) {
        return texture.source && std::holds_alternative<VulkanImageSource>(texture.source->operation);
    });
    const bool writes = recording.delivery == Delivery::hostImage;
    if (!reads && !writes) return;
    if (!resources_->device.isHosts())
        throw VulkanError("a host's image needs a context on the host's device");
    if (writes) {
        const PlanTexture& output = textures[std::size_t(recording.plan.outputs.front())];
        recording.destination = hostTexture(output, destination);
        recording.frame.keepAlive.push_back(recording.destination);
    }
    // Whatever the host did with its images on this queue before.
    VkMemoryBarrier barrier{VK_STRUCTURE_TYPE_MEMORY_BARRIER};
    barrier.srcAccessMask = VK_ACCESS_MEMORY_WRITE_BIT;
    barrier.dstAccessMask = VK_ACCESS_SHADER_READ_BIT | VK_ACCESS_COLOR_ATTACHMENT_READ_BIT |
                            VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT;
    vkCmdPipelineBarrier(
        recording.commands, VK_PIPELINE_STAGE_ALL_COMMANDS_BIT,
        VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT | VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT, 0, 1, &barrier,
        0, nullptr, 0, nullptr);
}

void VulkanContext::finishHostImage(Recording& recording, const MTIVulkanImage& destination) {
    imageBarrier(recording.commands, recording.frame, *recording.destination,
                 VkImageLayout(destination.layout), VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT,
                 VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT, VK_PIPELINE_STAGE_ALL_COMMANDS_BIT,
                 VK_ACCESS_MEMORY_READ_BIT | VK_ACCESS_MEMORY_WRITE_BIT);
}

void VulkanContext::handToHost(Recording& recording, Submission& submission) {
    for (int index : recording.plan.outputs) {
        HostPixels output{recording.textures[std::size_t(index)], nullptr};
        if (recording.delivery == Delivery::hostMemory && !output.texture->key().hostVisible) {
            Texture& texture = *output.texture;
            output.buffer = buffers_->acquire(texture.bytes(), true);
            recording.frame.keepAlive.push_back(output.buffer);  // the task may go before it has run
            imageBarrier(recording.commands, recording.frame, texture, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL,
                         VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT, VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT,
                         VK_PIPELINE_STAGE_TRANSFER_BIT, VK_ACCESS_TRANSFER_READ_BIT);
            const VkBufferImageCopy copy = wholeImage(texture);
            vkCmdCopyImageToBuffer(recording.commands, texture.image(), VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL,
                                   output.buffer->handle(), 1, &copy);
        }
        submission.outputs.push_back(std::move(output));
    }
    if (recording.delivery != Delivery::hostMemory) return;
    VkMemoryBarrier barrier{VK_STRUCTURE_TYPE_MEMORY_BARRIER};
    barrier.srcAccessMask = VK_ACCESS_TRANSFER_WRITE_BIT | VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT;
    barrier.dstAccessMask = VK_ACCESS_HOST_READ_BIT;
    vkCmdPipelineBarrier(recording.commands,
                         VK_PIPELINE_STAGE_TRANSFER_BIT | VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT,
                         VK_PIPELINE_STAGE_HOST_BIT, 0, 1, &barrier, 0, nullptr, 0, nullptr);
}

}  // namespace qv
