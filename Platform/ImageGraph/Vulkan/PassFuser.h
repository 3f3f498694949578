#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "Platform/Foundation/BackgroundQueue.h"
#include "Platform/ImageGraph/Private/FusedShaderStore.h"
#include "Platform/ImageGraph/Vulkan/PipelineStore.h"

namespace qv {

/// Fuses the passes of plans as far as their programs and pipelines are there, and makes those that are not,
/// at once or off the render thread. There what is asked for once only is not worth it: making begins at the
/// second frame of a shape. Thread-safe.
class PassFuser {
  public:
    PassFuser(PipelineStore& pipelines, std::string cacheDirectory)
        : pipelines_(pipelines), programs_(std::move(cacheDirectory)) {}
    ~PassFuser() { stop_ = true; }

    enum class Missing {
        madeInBackground,  ///< the passes stay plain for now
        madeNow            ///< waits for it
    };
    RenderPlan fuse(RenderPlan plan, Missing missing);

    /// Programs compiled so far.
    int compiledCount() const { return programs_.compiledCount(); }

  private:
    /// A fused pass as one pipeline draws it.
    struct Request {
        FusedShape shape;
        PlanPass pass;  ///< its words do not matter
        TextureFormat format;
        std::size_t hash() const;
    };

    /// The pass that is ready to draw; nothing when it is not.
    std::optional<PlanPass> passFor(const RenderPlan& plan, const FusedPass& fused, Missing missing);
    /// Puts the request on the queue when it is made often enough.
    void ask(Request request);
    void make(const Request& request) noexcept;
    /// Remembers the request; true from the second time on, until `make` has been asked for it.
    bool isWanted(std::size_t hash);
    void forget(std::size_t hash) noexcept;

    static constexpr std::size_t kMostRemembered = 1024;

    PipelineStore& pipelines_;
    FusedShaderStore programs_;
    std::mutex mutex_;                        ///< guards the sets
    std::unordered_set<std::size_t> seen_;    ///< hashes of requests, since it was last full
    std::unordered_set<std::size_t> making_;  ///< hashes of requests on the queue, or that failed
    std::atomic<bool> stop_{false};
    BackgroundQueue queue_;  ///< last: its tasks use all that is above
};

}  // namespace qv
