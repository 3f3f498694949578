#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

#include "Host/CommandLine/Interrupt.h"

namespace qv::host {

/// Hands values from one thread to another in order; the giver waits while `capacity` of them wait. An
/// interrupt of the process abandons the queue.
template <typename Value>
class BoundedQueue {
  public:
    explicit BoundedQueue(std::size_t capacity) : capacity_(capacity) {}

    /// False, dropping the value, once the queue is abandoned.
    bool push(Value value) {
        std::unique_lock lock(mutex_);
        waitFor(lock, [&] { return values_.size() < capacity_; });
        if (abandoned_) return false;
        values_.push_back(std::move(value));
        changed_.notify_all();
        return true;
    }

    /// The next value; nothing when the queue is closed and empty, or abandoned.
    std::optional<Value> pop() {
        std::unique_lock lock(mutex_);
        waitFor(lock, [&] { return !values_.empty() || closed_; });
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
    /// A signal handler can wake nobody, so waiting looks up now and then.
    template <typename Ready>
    void waitFor(std::unique_lock<std::mutex>& lock, Ready&& ready) {
        while (!ready() && !abandoned_) {
            changed_.wait_for(lock, std::chrono::milliseconds(100));
            abandoned_ = abandoned_ || isInterrupted();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Value> values_;
    std::size_t capacity_;
    bool closed_ = false, abandoned_ = false;
};

}  // namespace qv::host
