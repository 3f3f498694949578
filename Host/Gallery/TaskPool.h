#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "Host/Clips/BoundedQueue.h"

namespace qv::host {

/// Threads that do what they are given. Used by one thread at a time.
class TaskPool {
  public:
    explicit TaskPool(int threads);
    /// Drops what has not begun and waits for what has.
    ~TaskPool();

    /// Waits while as many tasks wait as there are threads. Throws what an earlier task threw.
    void submit(std::function<void()> task);
    /// Waits until every task is done. Throws what one threw, or as interrupted.
    void finish();

  private:
    void work();
    void rethrow();

    BoundedQueue<std::function<void()>> waiting_;
    std::mutex mutex_;
    std::condition_variable done_;
    int unfinished_ = 0;
    std::exception_ptr failure_;  ///< the first one
    std::vector<std::thread> threads_;
};

}  // namespace qv::host
