#include "Platform/Foundation/WorkerPool.h"

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <utility>

namespace qv {

namespace {
/// The process's one. It stays, as that of the parent does: works may outlive the library's other objects,
/// and threads that a forked process does not have may hold its parent's locks.
std::atomic<WorkerPool*> sharedPool;
}  // namespace

void WorkerPool::makePool() {
    sharedPool = new WorkerPool;
}

WorkerPool& WorkerPool::shared() {
    struct Holder {
        Holder() {
            makePool();
            ::pthread_atfork(nullptr, nullptr, makePool);
        }
        ~Holder() { sharedPool.load()->stop(); }
    };
    static const Holder holder;
    return *sharedPool;
}

int WorkerPool::threadCount() {
    return int(std::max(1u, std::thread::hardware_concurrency()));
}

void WorkerPool::begin(std::shared_ptr<BandedWork> work, bool first) {
    std::scoped_lock lock(mutex_);
    work->pool_ = this;
    if (!triedThreads_ && !stop_) {
        triedThreads_ = true;
        try {
            const auto count = std::size_t(threadCount());
            threads_.reserve(count);
            while (threads_.size() < count) threads_.emplace_back([this] { serve(); });
        } catch (const std::exception&) {
            // No more threads or no memory: those that there are do the work, or whoever waits.
        }
    }
    const auto& steps = work->steps_;
    while (work->step_ < steps.size() && steps[work->step_].bands <= 0) ++work->step_;
    work->done_ = work->step_ == steps.size();
    if (work->done_) return;
    wake(steps[work->step_].bands);
    if (first)
        works_.push_front(std::move(work));
    else
        works_.push_back(std::move(work));
}

void WorkerPool::start(std::shared_ptr<BandedWork> work) {
    begin(std::move(work), false);
}

void WorkerPool::wait(BandedWork& work) {
    Lock lock(mutex_);
    if (!work.done_ && work.pool_ != this)
        throw std::runtime_error("the render was begun by the process that this one was forked off");
    while (!work.done_) {
        // Without threads others that wait may have bands of it, or of what it has to wait for.
        if (!threads_.empty() || !runBand(lock, &work)) done_.wait(lock);
    }
    if (work.failure_) std::rethrow_exception(work.failure_);
}

bool WorkerPool::isDone(const BandedWork& work) {
    std::scoped_lock lock(mutex_);
    return work.done_;
}

void WorkerPool::run(BandedWork::Step step, std::shared_ptr<WorkLimit> limit) {
    const auto work = std::make_shared<BandedWork>(std::vector{std::move(step)}, std::move(limit));
    begin(work, true);
    Lock lock(mutex_);
    while (!work->done_) {
        if (!runBand(lock, work.get())) done_.wait(lock);
    }
    if (work->failure_) std::rethrow_exception(work->failure_);
}

void WorkerPool::wake(int bands) {
    for (int i = std::min(bands, idle_); i > 0; --i) wake_.notify_one();
}

void WorkerPool::serve() {
    Lock lock(mutex_);
    while (!stop_) {
        if (runBand(lock)) continue;
        ++idle_;
        wake_.wait(lock);
        --idle_;
    }
}

bool WorkerPool::runBand(Lock& lock, const BandedWork* wanted) {
    const auto found = std::ranges::find_if(works_, [&](const auto& work) {
        const WorkLimit* limit = work->limit_.get();
        return (!wanted || wanted == work.get()) && work->next_ < work->steps_[work->step_].bands &&
               !(limit && limit->threads > 0 && limit->running >= limit->threads);
    });
    if (found == works_.end()) return false;
    const std::shared_ptr<BandedWork> work = *found;
    const BandedWork::Step& step = work->steps_[work->step_];
    const int band = work->next_++;
    ++work->running_;
    if (work->limit_) ++work->limit_->running;
    lock.unlock();
    std::exception_ptr failure;
    try {
        step.run(band);
    } catch (...) {
        failure = std::current_exception();
    }
    lock.lock();
    finishBand(*work, std::move(failure));
    return true;
}

void WorkerPool::finishBand(BandedWork& work, std::exception_ptr failure) {
    const auto& steps = work.steps_;
    --work.running_;
    if (work.limit_ && work.limit_->running-- == work.limit_->threads) wake(1);
    if (failure && !work.failure_) {
        work.failure_ = std::move(failure);
        work.next_ = steps[work.step_].bands;
    }
    if (work.running_ > 0 || work.next_ < steps[work.step_].bands) return;
    do {
        ++work.step_;
    } while (work.step_ < steps.size() && steps[work.step_].bands <= 0);
    work.next_ = 0;
    if (!work.failure_ && work.step_ < steps.size()) {
        wake(steps[work.step_].bands - 1);
        return;
    }
    work.done_ = true;
    std::erase_if(works_, [&](const auto& one) { return one.get() == &work; });
    done_.notify_all();
}

void WorkerPool::stop() {
    {
        std::scoped_lock lock(mutex_);
        stop_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) thread.join();
    std::scoped_lock lock(mutex_);
    threads_.clear();
    done_.notify_all();
}

void runOverRows(int rows, std::size_t rowCost, const std::function<void(int begin, int end)>& work,
                 std::shared_ptr<WorkLimit> limit) {
    // Below this many bytes waking a thread costs more than it saves.
    constexpr std::size_t kSmallJob = std::size_t(512) << 10;
    if (rows < 4 || std::size_t(rows) * rowCost < kSmallJob || (limit && limit->threads == 1)) {
        work(0, rows);
        return;
    }
    // A few bands per thread, so that one that is held up does not hold up the rest.
    const int wanted = WorkerPool::threadCount() * 3;
    const int bandRows = std::max(((rows + wanted - 1) / wanted + 1) / 2 * 2, 2);
    WorkerPool::shared().run(
        {(rows + bandRows - 1) / bandRows,
         [&](int band) { work(band * bandRows, std::min((band + 1) * bandRows, rows)); }},
        std::move(limit));
}

}  // namespace qv
