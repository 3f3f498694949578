#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace qv::host {

/// Hands values from one thread to another in order; the giver waits while `capacity` of them wait.
template <typename Value>
class BoundedQueue {
  public:
    explicit BoundedQueue(std::size_t capacity) : capacity_(capacity) {}

    /// False, dropping the value, once the queue is abandoned.
    bool push(Value value) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return values_.size() < capacity_ || abandoned_; });
        if (abandoned_) return false;
        values_.push_back(std::move(value));
        changed_.notify_all();
        return true;
    }

    /// The next value; nothing when the queue is closed and empty, or abandoned.
    std::optional<Value> pop() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return !values_.empty() || closed_ || abandoned_; });
        if (abandoned_ || values_.empty()) return std::nullopt;
        std::optional<Value> value(std::move(values_.front()));
        values_.pop_front();
        changed_.notify_all();
        return value;
    }

    /// No more values will come.
    void close() {
        std::scoped_lock lock(mutex_);
        closed_ = true;
        changed_.notify_all();
    }

    /// Wakes both sides and drops what waits.
    void abandon() {
        std::scoped_lock lock(mutex_);
        abandoned_ = true;
        values_.clear();
        changed_.notify_all();
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Value> values_;
    std::size_t capacity_;
    bool closed_ = false, abandoned_ = false;
};

}  // namespace qv::host
