#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>

namespace qv {

/// Textures for reuse. One that was handed out comes back by itself when its last holder lets go; holders may
/// do so on any thread, also after the context is gone. An `Item` has `bytes()` and `lastUse`, the serial of
/// the last render that uses it.
template <typename Item>
class ReusePool : public std::enable_shared_from_this<ReusePool<Item>> {
  public:
    explicit ReusePool(std::uint64_t budgetBytes) : budgetBytes_(budgetBytes) {}

    /// One that waits and for which `fits(item)` holds, else what `make()` gives.
    template <typename Fits, typename Make>
    std::shared_ptr<Item> acquire(const Fits& fits, const Make& make) {
        List one;
        {
            std::scoped_lock lock(mutex_);
            const auto found = std::ranges::find_if(idle_, [&](const auto& idle) { return fits(*idle); });
            if (found != idle_.end()) {
                one.splice(one.end(), idle_, found);
                idleBytes_ -= one.front()->bytes();
            }
        }
        if (one.empty()) {
            one.push_back(make());
            heldBytes_ += one.front()->bytes();
            ++made_;
        }
        Item* const item = one.front().get();
        return {item, [pool = this->shared_from_this(), one = std::move(one)](Item*) mutable {
                    pool->giveBack(one);
                }};
    }

    /// Frees idle ones above the budget, the longest unused first, and those that no render has wanted for a
    /// while; sooner when renders have begun to want others, as after a change of size. Those that renders
    /// after `completed` use stay.
    void trim(std::uint64_t currentSerial, std::uint64_t completed = UINT64_MAX) {
        // Renders. Textures of a new kind come with another size or graph: then the old ones are not kept for
        // long.
        constexpr std::uint64_t kPatience = 120, kPatienceAfterChange = 8;
        std::scoped_lock lock(mutex_);
        if (const int made = made_; made != madeAtTrim_) {
            madeAtTrim_ = made;
            changed_ = currentSerial;
        }
        const bool isChanging = changed_ && currentSerial <= changed_ + 2 * kPatienceAfterChange;
        const std::uint64_t patience = isChanging ? kPatienceAfterChange : kPatience;
        for (auto it = idle_.end(); it != idle_.begin();) {
            --it;
            const bool over = idleBytes_ > budgetBytes_;
            const bool stale = (*it)->lastUse + patience < currentSerial;
            if ((*it)->lastUse > completed || !(over || stale)) continue;
            idleBytes_ -= (*it)->bytes();
            heldBytes_ -= (*it)->bytes();
            it = idle_.erase(it);
        }
    }

    /// Made so far.
    int madeCount() const { return made_; }
    /// Of those that are out and those that wait.
    std::uint64_t heldBytes() const { return heldBytes_; }

  protected:
    /// Frees all that wait.
    void clear() { idle_.clear(); }

  private:
    /// An item keeps its place in a list while it is out, so that coming back takes no memory.
    using List = std::list<std::unique_ptr<Item>>;

    void giveBack(List& one) noexcept {
        std::scoped_lock lock(mutex_);
        idleBytes_ += one.front()->bytes();
        idle_.splice(idle_.begin(), one);
    }

    const std::uint64_t budgetBytes_;
    std::atomic<int> made_{0};
    std::atomic<std::uint64_t> heldBytes_{0};
    std::mutex mutex_;
    List idle_;  ///< most recently returned first
    std::uint64_t idleBytes_ = 0;
    int madeAtTrim_ = 0;         ///< made before the last `trim`
    std::uint64_t changed_ = 0;  ///< serial at which `trim` last found new ones
};

}  // namespace qv
