#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "Platform/ImageGraph/Planner.h"
#include "Platform/ImageGraph/Vulkan/Texture.h"
#include "Platform/ImageGraph/Vulkan/VulkanFunctions.h"

namespace qv {

/// A pipeline and the layouts that it is used with.
struct Pipeline {
    VkPipeline handle = VK_NULL_HANDLE;
    VkPipelineLayout layout = VK_NULL_HANDLE;
    VkDescriptorSetLayout setLayout = VK_NULL_HANDLE;  ///< null where no texture is read
    std::uint32_t slots = 0;                           ///< vec4s of pushed words
    std::uint64_t lastUse = 0;                         ///< serial of the last submission that uses it
};

/// Pipelines by stages, variant, style and target format, made on first use. Thread-safe; what it hands out
/// stays until `trim`.
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
    /// The pipeline that draws overlays of a kind over a target. Throws VulkanError.
    Pipeline& overlay(const OverlayKind& kind, TextureFormat format);

    /// Frees the longest unused pipelines where there are many. Not while a frame is recorded.
    void trim(std::uint64_t currentSerial);
    /// Pipelines made so far.
    int madeCount() const { return made_; }

  private:
    static constexpr std::size_t kMostPipelines = 1024;

    /// What a pipeline is made of; keeps the stages.
    struct Recipe {
        std::shared_ptr<const ShaderFunction> vertexStage, fragmentStage;
        std::size_t textures;     ///< that the fragment stage reads
        std::uint32_t slots = 0;  ///< vec4s of pushed words
        DrawStyle style;
        TextureFormat format;
        std::vector<std::int32_t> selectors = {};  ///< by constant id
        std::uint32_t resampled = 0;               ///< as in PlanPass
        auto operator<=>(const Recipe&) const = default;
    };
    static Recipe fullScreenRecipe(const PlanPass& pass, TextureFormat format);

    Pipeline& findOrMake(const Recipe& recipe);
    Pipeline make(const Recipe& recipe);
    VkDescriptorSetLayout setLayout(std::size_t textures);
    VkPipelineLayout pipelineLayout(std::size_t textures, std::uint32_t slots);

    DeviceResources& resources_;
    std::atomic<int> made_{0};
    std::mutex mutex_;  ///< guards what follows
    std::uint64_t currentSerial_ = 0;
    std::map<Recipe, Pipeline> pipelines_;
    std::map<std::size_t, VkDescriptorSetLayout> setLayouts_;
    std::map<std::pair<std::size_t, std::uint32_t>, VkPipelineLayout> pipelineLayouts_;
};

}  // namespace qv
