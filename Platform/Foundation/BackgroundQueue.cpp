#include "Platform/Foundation/BackgroundQueue.h"

#include <unistd.h>

#include <utility>

namespace qv {

BackgroundQueue::~BackgroundQueue() {
    if (isForked()) {
        // What the missing thread has locked, or waits for, can be neither had nor destroyed.
        static_cast<void>(state_.release());
        return;
    }
    {
        std::scoped_lock lock(state_->mutex);
        state_->stop = true;
    }
    state_->wake.notify_one();
    if (state_->thread.joinable()) state_->thread.join();
}

bool BackgroundQueue::isForked() const {
    return process_ != 0 && process_ != ::getpid();
}

bool BackgroundQueue::async(std::function<void()> task) noexcept {
    if (isForked()) return false;
    try {
        std::scoped_lock lock(state_->mutex);
        if (!state_->thread.joinable()) {
            state_->thread = std::thread([this] { run(); });
            process_ = ::getpid();
        }
        state_->tasks.push_back(std::move(task));
        ++state_->queued;
    } catch (const std::exception&) {
        return false;
    }
    state_->wake.notify_one();
    return true;
}

void BackgroundQueue::drain() {
    if (isForked()) return;
    std::unique_lock lock(state_->mutex);
    state_->idle.wait(lock, [&, last = state_->queued] { return state_->finished >= last; });
}

void BackgroundQueue::run() {
    State& state = *state_;
    std::unique_lock lock(state.mutex);
    for (;;) {
        state.wake.wait(lock, [&] { return state.stop || !state.tasks.empty(); });
        if (state.tasks.empty()) return;
        auto task = std::move(state.tasks.front());
        state.tasks.pop_front();
        lock.unlock();
        task();
        task = nullptr;  // what the task holds is let go before it counts as finished
        lock.lock();
        ++state.finished;
        state.idle.notify_all();
    }
}

}  // namespace qv
