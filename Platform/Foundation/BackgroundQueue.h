#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace qv {

/// Runs tasks one after another on a thread of its own, which starts with the first. In a process forked off
/// since then there is no such thread: what was queued never runs. Thread-safe; the destructor finishes what
/// was queued.
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
    struct State {
        std::mutex mutex;
        std::condition_variable wake, idle;
        std::deque<std::function<void()>> tasks;
        std::uint64_t queued = 0, finished = 0;  ///< tasks so far
        bool stop = false;
        std::thread thread;
    };

    void run();
    /// Whether the thread is one of the process that this one was forked off.
    bool isForked() const;

    std::unique_ptr<State> state_ = std::make_unique<State>();
    std::atomic<int> process_{0};  ///< number of the process whose thread it is
};

}  // namespace qv
