#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace qv {

/// Runs tasks one after another on a thread of its own, which starts with the first. Thread-safe; the
/// destructor finishes what was queued.
class BackgroundQueue {
  public:
    BackgroundQueue() = default;
    ~BackgroundQueue();
    BackgroundQueue(const BackgroundQueue&) = delete;
    BackgroundQueue& operator=(const BackgroundQueue&) = delete;

    /// Queues a task and returns at once. A task must not throw. False, and the task never runs, when there
    /// is no thread or no memory to be had for it.
    bool async(std::function<void()> task) noexcept;
    /// Returns when every task queued before the call has run. Not to be called from a task.
    void drain();

  private:
    void run();

    std::mutex mutex_;
    std::condition_variable wake_, idle_;
    std::deque<std::function<void()>> tasks_;
    std::uint64_t queued_ = 0, finished_ = 0;  ///< tasks so far
    bool stop_ = false;
    std::thread thread_;
};

}  // namespace qv
