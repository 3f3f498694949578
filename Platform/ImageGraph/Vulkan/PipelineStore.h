#pragma once

#include <vulkan/vulkan.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
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
    std::shared_ptr<const ShaderFunction> function;    ///< kept for as long as the pipeline
    std::uint64_t lastUse = 0;                         ///< serial of the last submission that uses it
};

/// Pipelines by function, variant and target format, made on first use. Thread-safe; what it hands out stays
/// until `trim`.
class PipelineStore {
  public:
    explicit PipelineStore(DeviceResources& resources) : resources_(resources) {}
    ~PipelineStore() { clear(); }
    /// Destroys every pipeline; none may be in use.
    void clear();

    /// The pipeline of a full-screen pass, which is made when there is none. Throws VulkanError.
    Pipeline& fullScreen(const PlanPass& pass, TextureFormat format);
    /// Whether `fullScreen` has nothing to make.
    bool hasFullScreen(const PlanPass& pass, TextureFormat format);
    /// The pipeline that draws sprites over a target. Throws VulkanError.
    const Pipeline& sprites(TextureFormat format);

    /// Frees the longest unused pipelines where there are many. Not while a frame is recorded.
    void trim(std::uint64_t currentSerial);
    /// Pipelines made so far.
    int madeCount() const { return made_; }

  private:
    static constexpr std::size_t kMostPipelines = 1024;

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

    template <typename Which, typename Make>
    Pipeline& findOrMake(std::map<Which, Pipeline>& pipelines, const Which& which, Make make);
    Pipeline make(const PlanPass& pass, TextureFormat format);
    VkDescriptorSetLayout setLayout(std::size_t inputs);
    VkPipelineLayout pipelineLayout(std::size_t inputs, std::uint32_t slots);
    VkPipeline makePipeline(Stage vertex, Stage fragment, VkPipelineLayout layout, TextureFormat format,
                            bool sprites);

    DeviceResources& resources_;
    std::atomic<int> made_{0};
    std::mutex mutex_;  ///< guards what follows
    std::uint64_t currentSerial_ = 0;
    std::map<Key, Pipeline> fullScreen_;
    std::map<TextureFormat, Pipeline> sprites_;
    std::map<std::size_t, VkDescriptorSetLayout> setLayouts_;
    std::map<std::pair<std::size_t, std::uint32_t>, VkPipelineLayout> pipelineLayouts_;
};

}  // namespace qv
