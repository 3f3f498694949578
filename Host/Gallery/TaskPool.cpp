#include "Host/Gallery/TaskPool.h"

#include <chrono>

namespace qv::host {

TaskPool::TaskPool(int threads) : waiting_(std::size_t(threads)) {
    for (int i = 0; i < threads; ++i) threads_.emplace_back([this] { work(); });
}

TaskPool::~TaskPool() {
    waiting_.abandon();
    for (std::thread& thread : threads_) thread.join();
}

void TaskPool::submit(std::function<void()> task) {
    rethrow();
    {
        std::scoped_lock lock(mutex_);
        ++unfinished_;
    }
    waiting_.push(std::move(task));
}

void TaskPool::finish() {
    std::unique_lock lock(mutex_);
    // An interrupted pool drops tasks, which then never end.
    while (unfinished_ > 0 && !failure_ && !isInterrupted())
        done_.wait_for(lock, std::chrono::milliseconds(100));
    lock.unlock();
    rethrow();
    checkInterrupt();
}

void TaskPool::work() {
    while (auto task = waiting_.pop()) {
        std::exception_ptr failure;
        try {
            (*task)();
        } catch (...) {
            failure = std::current_exception();
        }
        std::scoped_lock lock(mutex_);
        if (failure && !failure_) failure_ = failure;
        --unfinished_;
        done_.notify_all();
    }
}

void TaskPool::rethrow() {
    std::scoped_lock lock(mutex_);
    if (failure_) std::rethrow_exception(failure_);
}

}  // namespace qv::host
