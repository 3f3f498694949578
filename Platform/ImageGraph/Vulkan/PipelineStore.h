#pragma once

#include <vulkan/vulkan.h>

#include <map>
#include <memory>
#include <vector>

#include "Platform/ImageGraph/Planner.h"
#include "Platform/ImageGraph/Vulkan/Texture.h"

namespace qv {

/// A pipeline and the layouts that it is used with.
struct Pipeline {
    VkPipeline handle = VK_NULL_HANDLE;
    VkPipelineLayout layout = VK_NULL_HANDLE;
    VkDescriptorSetLayout setLayout = VK_NULL_HANDLE;  ///< null for a function without inputs
    std::uint32_t slots = 0;                           ///< vec4s of pushed words
};

/// Pipelines by function, variant and target format, made on first use. Used by one thread at a time.
class PipelineStore {
  public:
    explicit PipelineStore(DeviceResources& resources) : resources_(resources) {}
    ~PipelineStore() { clear(); }
    /// Destroys every pipeline; none may be in use.
    void clear();

    /// The pipeline of a full-screen pass. Throws VulkanError.
    const Pipeline& fullScreen(const PlanPass& pass, TextureFormat format);
    /// The pipeline that draws sprites over a target.
    const Pipeline& sprites(TextureFormat format);

  private:
    struct Key {
        const ShaderFunction* function;
        std::vector<std::int32_t> selectors;
        std::uint32_t resampled;
        TextureFormat format;
        auto operator<=>(const Key&) const = default;
    };
    struct Stage {
        const ShaderFunction* function = nullptr;
        const VkSpecializationInfo* specialization = nullptr;
    };

    VkShaderModule module(const ShaderFunction& function);
    VkDescriptorSetLayout setLayout(std::size_t inputs);
    VkPipelineLayout pipelineLayout(std::size_t inputs, std::uint32_t slots);
    VkPipeline makePipeline(Stage vertex, Stage fragment, VkPipelineLayout layout, TextureFormat format,
                            bool sprites);

    DeviceResources& resources_;
    std::map<Key, Pipeline> fullScreen_;
    std::map<TextureFormat, Pipeline> sprites_;
    std::map<const ShaderFunction*, VkShaderModule> modules_;
    std::map<std::size_t, VkDescriptorSetLayout> setLayouts_;
    std::map<std::pair<std::size_t, std::uint32_t>, VkPipelineLayout> pipelineLayouts_;
};

}  // namespace qv
