#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>

namespace qv {

/// A thread-safe cache that keeps at most `countLimit` entries and drops the least recently used.
/// A limit of 0 means no limit.
template <typename Key, typename Value>
class NSCache {
  public:
    /// An empty cache.
    explicit NSCache(std::size_t countLimit = 0) : countLimit_(countLimit) {}

    /// The entry for `key`, which counts as used now; nothing when there is none.
    std::optional<Value> objectForKey(const Key& key) {
        std::scoped_lock lock(mutex_);
        auto found = index_.find(key);
        if (found == index_.end()) return std::nullopt;
        entries_.splice(entries_.begin(), entries_, found->second);
        return found->second->second;
    }

    /// Stores or replaces the entry for `key`, and drops the least recently used one above the limit.
    void setObject(Value value, const Key& key) {
        std::scoped_lock lock(mutex_);
        if (auto found = index_.find(key); found != index_.end()) {
            found->second->second = std::move(value);
            entries_.splice(entries_.begin(), entries_, found->second);
            return;
        }
        entries_.emplace_front(key, std::move(value));
        index_.emplace(key, entries_.begin());
        if (countLimit_ != 0 && entries_.size() > countLimit_) {
            index_.erase(entries_.back().first);
            entries_.pop_back();
        }
    }

    /// The entry for `key`, made by `make` on a miss. `make` runs without the lock held: two threads that
    /// miss together may both make one, and the later store wins. A value that converts to false is not kept.
    template <typename Make>
    Value objectForKey(const Key& key, Make&& make) {
        if (auto found = objectForKey(key)) return *std::move(found);
        Value made = std::forward<Make>(make)();
        if (static_cast<bool>(made)) setObject(made, key);
        return made;
    }

    /// Number of entries.
    std::size_t count() const {
        std::scoped_lock lock(mutex_);
        return entries_.size();
    }

  private:
    using Entries = std::list<std::pair<Key, Value>>;

    mutable std::mutex mutex_;
    std::size_t countLimit_;
    Entries entries_;
    std::unordered_map<Key, typename Entries::iterator> index_;
};

}  // namespace qv
