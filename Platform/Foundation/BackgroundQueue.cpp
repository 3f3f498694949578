#include "Platform/Foundation/BackgroundQueue.h"

#include <utility>

namespace qv {

BackgroundQueue::~BackgroundQueue() {
    {
        std::scoped_lock lock(mutex_);
        stop_ = true;
    }
    wake_.notify_one();
    if (thread_.joinable()) thread_.join();
}

bool BackgroundQueue::async(std::function<void()> task) noexcept {
    try {
        std::scoped_lock lock(mutex_);
        if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
        tasks_.push_back(std::move(task));
        ++queued_;
    } catch (const std::exception&) {
        return false;
    }
    wake_.notify_one();
    return true;
}

void BackgroundQueue::drain() {
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this, last = queued_] { return finished_ >= last; });
}

void BackgroundQueue::run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return stop_ || !tasks_.empty(); });
        if (tasks_.empty()) return;
        auto task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
        task = nullptr;  // what the task holds is let go before it counts as finished
        lock.lock();
        ++finished_;
        idle_.notify_all();
    }
}

}  // namespace qv
