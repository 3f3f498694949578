#include "Platform/ImageGraph/Vulkan/PipelineStore.h"

#include <algorithm>
#include <string>

#include "Platform/ImageGraph/Vulkan/SpriteAtlas.h"

namespace qv {

namespace {

const ShaderFunction& stockStage(const std::string& name) {
    const auto& library = ShaderLibrary::platform();
    const auto stage = library ? library->function(name) : nullptr;
    if (!stage) throw VulkanError("the shader stage " + name + " is missing");
    return *stage;  // the library keeps it
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
    for (auto& [key, pipeline] : fullScreen_) vkDestroyPipeline(device, pipeline.handle, nullptr);
    for (auto& [key, pipeline] : sprites_) vkDestroyPipeline(device, pipeline.handle, nullptr);
    for (auto& [key, layout] : pipelineLayouts_) vkDestroyPipelineLayout(device, layout, nullptr);
    for (auto& [key, layout] : setLayouts_) vkDestroyDescriptorSetLayout(device, layout, nullptr);
    fullScreen_.clear();
    sprites_.clear();
    pipelineLayouts_.clear();
    setLayouts_.clear();
}

VkDescriptorSetLayout PipelineStore::setLayout(std::size_t inputs) {
    std::scoped_lock lock(mutex_);
    VkDescriptorSetLayout& layout = setLayouts_[inputs];
    if (layout) return layout;
    std::vector<VkDescriptorSetLayoutBinding> bindings(inputs);
    for (std::size_t i = 0; i < inputs; ++i) {
        bindings[i] = {std::uint32_t(i), VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER, 1,
                       VK_SHADER_STAGE_FRAGMENT_BIT, nullptr};
    }
    VkDescriptorSetLayoutCreateInfo info{VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO};
    info.bindingCount = std::uint32_t(inputs);
    info.pBindings = bindings.data();
    return layout = created(vkCreateDescriptorSetLayout, resources_.device.handle(), info,
                            "cannot create a layout");
}

VkPipelineLayout PipelineStore::pipelineLayout(std::size_t inputs, std::uint32_t slots) {
    const VkDescriptorSetLayout set = inputs ? setLayout(inputs) : VK_NULL_HANDLE;
    std::scoped_lock lock(mutex_);
    VkPipelineLayout& layout = pipelineLayouts_[{inputs, slots}];
    if (layout) return layout;
    const VkPushConstantRange words{VK_SHADER_STAGE_VERTEX_BIT, 0, slots * 16};
    VkPipelineLayoutCreateInfo info{VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO};
    info.setLayoutCount = inputs ? 1 : 0;
    info.pSetLayouts = &set;
    info.pushConstantRangeCount = slots ? 1 : 0;
    info.pPushConstantRanges = &words;
    return layout =
               created(vkCreatePipelineLayout, resources_.device.handle(), info, "cannot create a layout");
}

bool PipelineStore::hasFullScreen(const PlanPass& pass, TextureFormat format) {
    std::scoped_lock lock(mutex_);
    return fullScreen_.contains(Key{pass.function.get(), pass.selectors, pass.resampled, format});
}

template <typename Which, typename Make>
Pipeline& PipelineStore::findOrMake(std::map<Which, Pipeline>& pipelines, const Which& which, Make make) {
    {
        std::scoped_lock lock(mutex_);
        if (const auto found = pipelines.find(which); found != pipelines.end()) return found->second;
    }
    std::map<Which, Pipeline> made;  // its place comes first: putting it there then needs no memory
    Pipeline& pipeline = made[which];
    pipeline = make();  // unlocked: it may take long
    std::scoped_lock lock(mutex_);
    pipeline.lastUse = currentSerial_;
    const auto place = pipelines.insert(made.extract(made.begin()));
    if (!place.inserted)  // another thread was faster
        vkDestroyPipeline(resources_.device.handle(), place.node.mapped().handle, nullptr);
    return place.position->second;
}

Pipeline& PipelineStore::fullScreen(const PlanPass& pass, TextureFormat format) {
    return findOrMake(fullScreen_, Key{pass.function.get(), pass.selectors, pass.resampled, format},
                      [&] { return make(pass, format); });
}

Pipeline PipelineStore::make(const PlanPass& pass, TextureFormat format) {
    const ShaderFunction& function = *pass.function;
    Pipeline pipeline;
    pipeline.function = pass.function;
    pipeline.slots = std::uint32_t(function.pushedWords + 3) / 4;
    pipeline.layout = pipelineLayout(function.inputs.size(), pipeline.slots);
    if (!function.inputs.empty()) pipeline.setLayout = setLayout(function.inputs.size());

    std::vector<std::int32_t> values = pass.selectors;
    std::vector<VkSpecializationMapEntry> entries;
    for (std::uint32_t id = 0; id < pass.selectors.size(); ++id) entries.push_back({id, id * 4, 4});
    for (std::uint32_t i = 0; i < function.inputs.size(); ++i) {
        entries.push_back({kResampleConstantBase + i, std::uint32_t(values.size()) * 4, 4});
        values.push_back(std::int32_t(pass.resampled >> i & 1u));
    }
    const VkSpecializationInfo specialization{std::uint32_t(entries.size()), entries.data(),
                                              values.size() * 4, values.data()};
    pipeline.handle = makePipeline({&stockStage("fullscreen" + std::to_string(pipeline.slots) + ".vert")},
                                   {&function, &specialization}, pipeline.layout, format, false);
    return pipeline;
}

const Pipeline& PipelineStore::sprites(TextureFormat format) {
    return findOrMake(sprites_, format, [&] {
        Pipeline pipeline;
        pipeline.layout = pipelineLayout(1, 0);
        pipeline.setLayout = setLayout(1);
        pipeline.handle = makePipeline({&stockStage("sprite.vert")}, {&stockStage("sprite.frag")},
                                       pipeline.layout, format, true);
        return pipeline;
    });
}

void PipelineStore::trim(std::uint64_t currentSerial) {
    std::scoped_lock lock(mutex_);
    currentSerial_ = currentSerial;
    const std::uint64_t completed = resources_.completedSerial;
    while (fullScreen_.size() > kMostPipelines) {
        const auto oldest =
            std::ranges::min_element(fullScreen_, {}, [](const auto& entry) { return entry.second.lastUse; });
        if (oldest->second.lastUse > completed) return;
        vkDestroyPipeline(resources_.device.handle(), oldest->second.handle, nullptr);
        fullScreen_.erase(oldest);
    }
}

VkPipeline PipelineStore::makePipeline(Stage vertex, Stage fragment, VkPipelineLayout layout,
                                       TextureFormat format, bool sprites) {
    ++made_;
    const Module vertexModule(resources_.device.handle(), *vertex.function);
    const Module fragmentModule(resources_.device.handle(), *fragment.function);
    VkPipelineShaderStageCreateInfo stages[2]{};
    stages[0].sType = stages[1].sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO;
    stages[0].stage = VK_SHADER_STAGE_VERTEX_BIT;
    stages[0].module = vertexModule.handle();
    stages[1].stage = VK_SHADER_STAGE_FRAGMENT_BIT;
    stages[1].module = fragmentModule.handle();
    stages[1].pSpecializationInfo = fragment.specialization;
    stages[0].pName = stages[1].pName = "main";

    VkPipelineVertexInputStateCreateInfo input{VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO};
    const VkVertexInputBindingDescription binding{0, sizeof(SpriteVertexData), VK_VERTEX_INPUT_RATE_INSTANCE};
    std::vector<VkVertexInputAttributeDescription> attributes;
    for (std::uint32_t i = 0; i < sizeof(SpriteVertexData) / 16; ++i) {
        attributes.push_back({i, 0, VK_FORMAT_R32G32B32A32_SFLOAT, i * 16});
    }
    if (sprites) {
        input.vertexBindingDescriptionCount = 1;
        input.pVertexBindingDescriptions = &binding;
        input.vertexAttributeDescriptionCount = std::uint32_t(attributes.size());
        input.pVertexAttributeDescriptions = attributes.data();
    }
    VkPipelineInputAssemblyStateCreateInfo assembly{
        VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO};
    assembly.topology = sprites ? VK_PRIMITIVE_TOPOLOGY_TRIANGLE_STRIP : VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST;
    VkPipelineViewportStateCreateInfo viewport{VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO};
    viewport.viewportCount = viewport.scissorCount = 1;
    VkPipelineRasterizationStateCreateInfo raster{VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO};
    raster.polygonMode = VK_POLYGON_MODE_FILL;
    raster.cullMode = VK_CULL_MODE_NONE;
    raster.lineWidth = 1;
    VkPipelineMultisampleStateCreateInfo samples{VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO};
    samples.rasterizationSamples = VK_SAMPLE_COUNT_1_BIT;
    VkPipelineColorBlendAttachmentState blend{};
    blend.colorWriteMask = VK_COLOR_COMPONENT_R_BIT | VK_COLOR_COMPONENT_G_BIT | VK_COLOR_COMPONENT_B_BIT |
                           VK_COLOR_COMPONENT_A_BIT;
    if (sprites) {  // premultiplied source over the target
        blend.blendEnable = VK_TRUE;
        blend.srcColorBlendFactor = blend.srcAlphaBlendFactor = VK_BLEND_FACTOR_ONE;
        blend.dstColorBlendFactor = blend.dstAlphaBlendFactor = VK_BLEND_FACTOR_ONE_MINUS_SRC_ALPHA;
    }
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
    info.layout = layout;
    info.renderPass = resources_.renderPass(format, DeviceResources::TargetUse::sampled);
    VkPipeline pipeline = VK_NULL_HANDLE;
    check(vkCreateGraphicsPipelines(resources_.device.handle(), VK_NULL_HANDLE, 1, &info, nullptr, &pipeline),
          "cannot build a pipeline");
    return pipeline;
}

}  // namespace qv
