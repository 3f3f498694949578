#include "Platform/Media/RowBands.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace qv {
namespace {

/// Below this many bytes waking a thread costs more than it saves.
constexpr std::size_t kSmallJob = std::size_t(512) << 10;

struct Job {
    const std::function<void(int, int)>* work;
    int rows, bandRows;
    int next = 0;     ///< first row that nobody has taken
    int running = 0;  ///< bands being worked on
};

/// All members are guarded by the mutex; bands are coarse enough for that.
class Workers {
  public:
    static Workers& shared() {
        static Workers workers;
        return workers;
    }

    void run(Job& job) {
        std::unique_lock lock(mutex_);
        jobs_.push_back(&job);
        wake_.notify_all();
        while (runBand(job, lock)) {
        }
        done_.wait(lock, [&] { return job.running == 0; });
    }

    int count() const { return int(threads_.size()) + 1; }

  private:
    Workers() {
        const unsigned cores = std::clamp(std::thread::hardware_concurrency(), 1u, 16u);
        threads_.reserve(cores);
        try {
            for (unsigned i = 1; i < cores; ++i) threads_.emplace_back([this] { serve(); });
        } catch (const std::system_error&) {
            // The work is done by as many as there are.
        }
    }

    ~Workers() {
        {
            std::lock_guard lock(mutex_);
            stop_ = true;
        }
        wake_.notify_all();
        for (std::thread& thread : threads_) thread.join();
    }

    void serve() {
        std::unique_lock lock(mutex_);
        while (true) {
            wake_.wait(lock, [&] { return stop_ || !jobs_.empty(); });
            if (stop_) return;
            runBand(*jobs_.front(), lock);
        }
    }

    /// False when none is left. A job leaves the list with its last band.
    bool runBand(Job& job, std::unique_lock<std::mutex>& lock) {
        if (job.next >= job.rows) return false;
        const int begin = job.next, end = std::min(begin + job.bandRows, job.rows);
        job.next = end;
        if (end == job.rows) std::erase(jobs_, &job);
        ++job.running;
        lock.unlock();
        (*job.work)(begin, end);
        lock.lock();
        if (--job.running == 0 && job.next >= job.rows) done_.notify_all();
        return true;
    }

    std::mutex mutex_;
    std::condition_variable wake_, done_;
    std::vector<Job*> jobs_;
    std::vector<std::thread> threads_;
    bool stop_ = false;
};

}  // namespace

void forEachRowBand(int rows, std::size_t rowCost, const std::function<void(int begin, int end)>& work) {
    if (rows < 4 || std::size_t(rows) * rowCost < kSmallJob) {
        work(0, rows);
        return;
    }
    Workers& workers = Workers::shared();
    // A few bands per thread, so that one that is held up does not hold up the rest.
    const int bands = workers.count() * 3;
    Job job{&work, rows, std::max(((rows + bands - 1) / bands + 1) / 2 * 2, 2)};
    workers.run(job);
}

}  // namespace qv
