#include "Platform/Foundation/BackgroundQueue.h"

#include <utility>

namespace qv {

BackgroundQueue::BackgroundQueue() : thread_([this] { run(); }) {}

BackgroundQueue::~BackgroundQueue() {
    {
        std::scoped_lock lock(mutex_);
        stop_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

void BackgroundQueue::async(std::function<void()> task) {
    {
        std::scoped_lock lock(mutex_);
        tasks_.push_back(std::move(task));
        ++queued_;
    }
    wake_.notify_one();
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
