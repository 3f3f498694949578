#include "Platform/ImageGraph/Vulkan/PipelineStore.h"

#include <algorithm>
#include <string>

namespace qv {

namespace {

VkPrimitiveTopology vulkanTopology(DrawTopology topology) {
    return topology == DrawTopology::triangleStrip ? VK_PRIMITIVE_TOPOLOGY_TRIANGLE_STRIP
                                                   : VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST;
}

VkPipelineColorBlendAttachmentState vulkanBlend(DrawBlend blend) {
    VkPipelineColorBlendAttachmentState state{};
    state.colorWriteMask = VK_COLOR_COMPONENT_R_BIT | VK_COLOR_COMPONENT_G_BIT | VK_COLOR_COMPONENT_B_BIT |
                           VK_COLOR_COMPONENT_A_BIT;
    state.blendEnable = blend != DrawBlend::replace;
    state.colorBlendOp = state.alphaBlendOp =
        blend == DrawBlend::brightest ? VK_BLEND_OP_MAX : VK_BLEND_OP_ADD;
    // Choosing the larger one looks at no factor.
    state.srcColorBlendFactor = state.srcAlphaBlendFactor = VK_BLEND_FACTOR_ONE;
    state.dstColorBlendFactor = state.dstAlphaBlendFactor = VK_BLEND_FACTOR_ONE_MINUS_SRC_ALPHA;
    return state;
}

/// Code as the driver takes it, for as long as a pipeline is made of it.
class Module {
  public:
    Module(VkDevice device, const ShaderFunction& function) : device_(device) {
        VkShaderModuleCreateInfo info{VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO};
        info.codeSize = function.code.size() * sizeof(std::uint32_t);
        info.pCode = function.code.data();
        handle_ = created(vkCreateShaderModule, device, info, "cannot load a shader");
    }
    ~Module() { vkDestroyShaderModule(device_, handle_, nullptr); }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    VkShaderModule handle() const { return handle_; }

  private:
    VkDevice device_;
    VkShaderModule handle_ = VK_NULL_HANDLE;
};

}  // namespace

void PipelineStore::clear() {
    const VkDevice device = resources_.device.handle();
    for (auto& [recipe, pipeline] : pipelines_) vkDestroyPipeline(device, pipeline.handle, nullptr);
    for (auto& [key, layout] : pipelineLayouts_) vkDestroyPipelineLayout(device, layout, nullptr);
    for (auto& [key, layout] : setLayouts_) vkDestroyDescriptorSetLayout(device, layout, nullptr);
    pipelines_.clear();
    pipelineLayouts_.clear();
    setLayouts_.clear();
}

VkDescriptorSetLayout PipelineStore::setLayout(std::size_t textures) {
    std::scoped_lock lock(mutex_);
    VkDescriptorSetLayout& layout = setLayouts_[textures];
    if (layout) return layout;
    std::vector<VkDescriptorSetLayoutBinding> bindings(textures);
    for (std::size_t i = 0; i < textures; ++i) {
        bindings[i] = {std::uint32_t(i), VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER, 1,
                       VK_SHADER_STAGE_FRAGMENT_BIT, nullptr};
    }
    VkDescriptorSetLayoutCreateInfo info{VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO};
    info.bindingCount = std::uint32_t(textures);
    info.pBindings = bindings.data();
    return layout = created(vkCreateDescriptorSetLayout, resources_.device.handle(), info,
                            "cannot create a layout");
}

VkPipelineLayout PipelineStore::pipelineLayout(std::size_t textures, std::uint32_t slots) {
    const VkDescriptorSetLayout set = textures ? setLayout(textures) : VK_NULL_HANDLE;
    std::scoped_lock lock(mutex_);
    VkPipelineLayout& layout = pipelineLayouts_[{textures, slots}];
    if (layout) return layout;
    const VkPushConstantRange words{VK_SHADER_STAGE_VERTEX_BIT, 0, slots * 16};
    VkPipelineLayoutCreateInfo info{VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO};
    info.setLayoutCount = textures ? 1 : 0;
    info.pSetLayouts = &set;
    info.pushConstantRangeCount = slots ? 1 : 0;
    info.pPushConstantRanges = &words;
    return layout =
               created(vkCreatePipelineLayout, resources_.device.handle(), info, "cannot create a layout");
}

PipelineStore::Recipe PipelineStore::fullScreenRecipe(const PlanPass& pass, TextureFormat format) {
    const auto slots = std::uint32_t(pass.function->pushedWords + 3) / 4;
    const auto& library = ShaderLibrary::platform();
    return {
        .vertexStage = library ? library->function("fullscreen" + std::to_string(slots) + ".vert") : nullptr,
        .fragmentStage = pass.function,
        .textures = pass.function->inputs.size(),
        .slots = slots,
        .style = {.blend = pass.isBlended ? DrawBlend::sourceOver : DrawBlend::replace,
                  .samples = pass.samples},
        .format = format,
        .selectors = pass.selectors,
        .resampled = pass.resampled};
}

bool PipelineStore::canDraw(const PlanPass& pass, const PassFormats& formats) {
    const Recipe recipe = fullScreenRecipe(pass, formats.output);
    std::scoped_lock lock(mutex_);
    return pipelines_.contains(recipe);
}

Pipeline& PipelineStore::fullScreen(const PlanPass& pass, TextureFormat format) {
    return findOrMake(fullScreenRecipe(pass, format));
}

Pipeline& PipelineStore::overlay(const OverlayKind& kind, TextureFormat format) {
    return findOrMake({.vertexStage = kind.vertexStage,
                       .fragmentStage = kind.fragmentStage,
                       .textures = std::size_t(kind.textures),
                       .style = kind.style,
                       .format = format});
}

Pipeline& PipelineStore::findOrMake(const Recipe& recipe) {
    {
        std::scoped_lock lock(mutex_);
        if (const auto found = pipelines_.find(recipe); found != pipelines_.end()) return found->second;
    }
    std::map<Recipe, Pipeline> made;  // its place comes first: putting it there then needs no memory
    Pipeline& pipeline = made[recipe];
    pipeline = make(recipe);  // unlocked: it may take long
    std::scoped_lock lock(mutex_);
    pipeline.lastUse = currentSerial_;
    const auto place = pipelines_.insert(made.extract(made.begin()));
    if (!place.inserted)  // another thread was faster
        vkDestroyPipeline(resources_.device.handle(), place.node.mapped().handle, nullptr);
    return place.position->second;
}

void PipelineStore::trim(std::uint64_t currentSerial) {
    std::scoped_lock lock(mutex_);
    currentSerial_ = currentSerial;
    const std::uint64_t completed = resources_.completedSerial;
    while (pipelines_.size() > kMostPipelines) {
        const auto oldest =
            std::ranges::min_element(pipelines_, {}, [](const auto& entry) { return entry.second.lastUse; });
        if (oldest->second.lastUse > completed) return;
        vkDestroyPipeline(resources_.device.handle(), oldest->second.handle, nullptr);
        pipelines_.erase(oldest);
    }
}

Pipeline PipelineStore::make(const Recipe& recipe) {
    if (!recipe.vertexStage || !recipe.fragmentStage) throw VulkanError("a shader stage is missing");
    ++made_;
    Pipeline pipeline;
    pipeline.slots = recipe.slots;
    pipeline.layout = pipelineLayout(recipe.textures, recipe.slots);
    if (recipe.textures > 0) pipeline.setLayout = setLayout(recipe.textures);

    std::vector<std::int32_t> values = recipe.selectors;
    std::vector<VkSpecializationMapEntry> entries;
    for (std::uint32_t id = 0; id < recipe.selectors.size(); ++id) entries.push_back({id, id * 4, 4});
    for (std::uint32_t i = 0; i < recipe.textures; ++i) {
        entries.push_back({kResampleConstantBase + i, std::uint32_t(values.size()) * 4, 4});
        values.push_back(std::int32_t(recipe.resampled >> i & 1u));
    }
    // Stages that have no such constants ignore them.
    const VkSpecializationInfo specialization{std::uint32_t(entries.size()), entries.data(),
                                              values.size() * 4, values.data()};
    const Module vertexModule(resources_.device.handle(), *recipe.vertexStage);
    const Module fragmentModule(resources_.device.handle(), *recipe.fragmentStage);
    VkPipelineShaderStageCreateInfo stages[2]{};
    stages[0].sType = stages[1].sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO;
    stages[0].stage = VK_SHADER_STAGE_VERTEX_BIT;
    stages[0].module = vertexModule.handle();
    stages[1].stage = VK_SHADER_STAGE_FRAGMENT_BIT;
    stages[1].module = fragmentModule.handle();
    stages[1].pSpecializationInfo = &specialization;
    stages[0].pName = stages[1].pName = "main";

    VkPipelineVertexInputStateCreateInfo input{VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO};
    const auto vectors = std::uint32_t(recipe.style.instanceVectors);
    const VkVertexInputBindingDescription binding{0, vectors * 16, VK_VERTEX_INPUT_RATE_INSTANCE};
    std::vector<VkVertexInputAttributeDescription> attributes;
    for (std::uint32_t i = 0; i < vectors; ++i)
        attributes.push_back({i, 0, VK_FORMAT_R32G32B32A32_SFLOAT, i * 16});
    input.vertexBindingDescriptionCount = vectors > 0 ? 1 : 0;
    input.pVertexBindingDescriptions = &binding;
    input.vertexAttributeDescriptionCount = vectors;
    input.pVertexAttributeDescriptions = attributes.data();
    VkPipelineInputAssemblyStateCreateInfo assembly{
        VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO};
    assembly.topology = vulkanTopology(recipe.style.topology);
    VkPipelineViewportStateCreateInfo viewport{VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO};
    viewport.viewportCount = viewport.scissorCount = 1;
    VkPipelineRasterizationStateCreateInfo raster{VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO};
    raster.polygonMode = VK_POLYGON_MODE_FILL;
    raster.cullMode = VK_CULL_MODE_NONE;
    raster.lineWidth = 1;
    VkPipelineMultisampleStateCreateInfo samples{VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO};
    samples.rasterizationSamples = resources_.sampleCount(recipe.style.samples);
    const VkPipelineColorBlendAttachmentState blend = vulkanBlend(recipe.style.blend);
    VkPipelineColorBlendStateCreateInfo blending{VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO};
    blending.attachmentCount = 1;
    blending.pAttachments = &blend;
    const VkDynamicState dynamicStates[] = {VK_DYNAMIC_STATE_VIEWPORT, VK_DYNAMIC_STATE_SCISSOR};
    VkPipelineDynamicStateCreateInfo dynamic{VK_STRUCTURE_TYPE_PIPELINE_DYNAMIC_STATE_CREATE_INFO};
    dynamic.dynamicStateCount = 2;
    dynamic.pDynamicStates = dynamicStates;

    VkGraphicsPipelineCreateInfo info{VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO};
    info.stageCount = 2;
    info.pStages = stages;
    info.pVertexInputState = &input;
    info.pInputAssemblyState = &assembly;
    info.pViewportState = &viewport;
    info.pRasterizationState = &raster;
    info.pMultisampleState = &samples;
    info.pColorBlendState = &blending;
    info.pDynamicState = &dynamic;
    info.layout = pipeline.layout;
    info.renderPass =
        resources_.renderPass(recipe.format, DeviceResources::TargetUse::sampled, recipe.style.samples);
    check(vkCreateGraphicsPipelines(resources_.device.handle(), VK_NULL_HANDLE, 1, &info, nullptr,
                                    &pipeline.handle),
          "cannot build a pipeline");
    return pipeline;
}

}  // namespace qv
