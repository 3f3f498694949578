#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "Platform/Foundation/BackgroundQueue.h"
#include "Platform/ImageGraph/PassFusion.h"
#include "Platform/ImageGraph/Private/FusedShaderStore.h"

namespace qv {

/// Formats of the textures that a pass reads, by binding, and writes.
struct PassFormats {
    std::vector<TextureFormat> inputs;  ///< of a nil image rgba8
    TextureFormat output = TextureFormat::rgba8;
    auto operator<=>(const PassFormats&) const = default;
};
PassFormats formatsOf(const RenderPlan& plan, const PlanPass& pass);

/// What a context draws full-screen passes with, such as its pipelines. Thread-safe.
class PassPrograms {
  public:
    virtual ~PassPrograms() = default;
    /// Whether the pass can be drawn at once.
    virtual bool canDraw(const PlanPass& pass, const PassFormats& formats) = 0;
    /// Makes what the pass is drawn with. Throws.
    virtual void makeFor(const PlanPass& pass, const PassFormats& formats) = 0;
};

/// Fuses the passes of plans as far as their programs are there and can be drawn, and makes those that are
/// not, at once or off the render thread. There what is asked for once only is not worth it: making begins at
/// the second frame of a shape. Thread-safe.
class PassFuser {
  public:
    PassFuser(PassPrograms& drawn, std::string cacheDirectory)
        : drawn_(drawn), programs_(std::move(cacheDirectory)) {}
    ~PassFuser() { stop_ = true; }

    enum class Missing {
        madeInBackground,  ///< the passes stay plain for now
        madeNow            ///< waits for it
    };
    /// `sparesPixels`, where software draws: transforms are drawn at the size that they are read at, parts
    /// of a target by other programs where that takes less work, and of what is enlarged only what is shown.
    RenderPlan fuse(RenderPlan plan, Missing missing, bool sparesPixels = false);

    /// Programs compiled so far.
    int compiledCount() const { return programs_.compiledCount(); }

  private:
    /// A fused pass as it is drawn.
    struct Request {
        FusedShape shape;
        PlanPass pass;  ///< its words do not matter
        PassFormats formats;
        std::size_t hash() const;
    };

    /// The pass that is ready to draw; nothing when it is not.
    std::optional<PlanPass> passFor(const RenderPlan& plan, const FusedPass& fused, Missing missing,
                                    bool isBlended = false);
    /// Makes what the pass is drawn with; false when it cannot be compiled, which is told once and not tried
    /// again. Throws RenderError when the device fails.
    bool makeNow(const Request& request);
    /// Puts the request on the queue when it is made often enough.
    void ask(Request request);
    void make(const Request& request) noexcept;
    /// Remembers the request; true from the second time on, until `make` has been asked for it.
    bool isWanted(std::size_t hash);
    void forget(std::size_t hash) noexcept;

    static constexpr std::size_t kMostRemembered = 1024;

    PassPrograms& drawn_;
    FusedShaderStore programs_;
    std::mutex mutex_;                        ///< guards the sets
    std::unordered_set<std::size_t> seen_;    ///< hashes of requests, since it was last full
    std::unordered_set<std::size_t> making_;  ///< hashes of requests on the queue, or that failed there
    std::unordered_set<std::size_t> failed_;  ///< hashes of requests that failed when they were made at once
    std::atomic<bool> stop_{false};
    BackgroundQueue queue_;  ///< last: its tasks use all that is above
};

}  // namespace qv
