#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace qv {

class WorkerPool;

/// How many threads some works may have together at a time.
struct WorkLimit {
    /// At most `most` of them, 0 for all.
    explicit WorkLimit(int most) : threads(most) {}
    const int threads;  ///< 0: all
  private:
    friend class WorkerPool;
    int running = 0;
};

/// Steps that run one after another. The bands of a step run in any order and at the same time; none may wait
/// for another. A failed band ends the work.
class BandedWork {
  public:
    /// Calls `run` once with each number from 0 to `bands` − 1.
    struct Step {
        int bands;                          ///< how many calls it is
        std::function<void(int band)> run;  ///< does one of them
    };
    /// Begins with the first of `steps` when a pool is given it; shares the threads that `limit` allows.
    explicit BandedWork(std::vector<Step> steps, std::shared_ptr<WorkLimit> limit = nullptr)
        : steps_(std::move(steps)), limit_(std::move(limit)) {}

  private:
    friend class WorkerPool;
    const std::vector<Step> steps_;
    const std::shared_ptr<WorkLimit> limit_;
    WorkerPool* pool_ = nullptr;  ///< that it was begun in
    // Guarded by the pool.
    std::size_t step_ = 0;
    int next_ = 0;     ///< first band of the step that nobody has taken
    int running_ = 0;  ///< bands being worked on
    bool done_ = false;
    std::exception_ptr failure_;  ///< of the first band that failed
};

/// The process's threads for what is divided into bands, as many as cores. They start with the first work and
/// end with the library. Where none can be had, whoever waits does the work. A process forked off has a pool
/// of its own; what its parent had begun never ends in it, and waiting for that throws. Thread-safe.
class WorkerPool {
  public:
    /// The process's one.
    static WorkerPool& shared();

    /// How many threads work together.
    static int threadCount();

    /// Begins a work and returns at once; works that were begun earlier go first. Throws std::bad_alloc.
    void start(std::shared_ptr<BandedWork> work);
    /// Returns when the work is done. Throws what a band has thrown.
    void wait(BandedWork& work);
    /// Whether it is done, without waiting.
    bool isDone(const BandedWork& work);
    /// Does a step now, before all others, with the calling thread's help. Throws what a band has thrown.
    void run(BandedWork::Step step, std::shared_ptr<WorkLimit> limit = nullptr);

  private:
    using Lock = std::unique_lock<std::mutex>;

    /// Makes the pool of this process, and that of each that is forked off.
    static void makePool();
    void begin(std::shared_ptr<BandedWork> work, bool first);
    void serve();
    void stop();
    /// Runs a band of a work that has one to give, or of the one that is asked for. False when there is none.
    bool runBand(Lock& lock, const BandedWork* wanted = nullptr);
    void finishBand(BandedWork& work, std::exception_ptr failure);
    void wake(int bands);

    std::mutex mutex_;
    std::condition_variable wake_, done_;
    std::deque<std::shared_ptr<BandedWork>> works_;  ///< in the order in which they are served
    std::vector<std::thread> threads_;
    int idle_ = 0;
    bool triedThreads_ = false, stop_ = false;
};

/// Calls `work(begin, end)` for bands that cover rows 0..rows−1, on the calling thread and the workers, and
/// returns when all are done. Bands begin at even rows. `rowCost` is roughly the bytes touched per row: small
/// jobs stay on the calling thread. Throws what `work` has thrown. Callable from several threads at once.
void runOverRows(int rows, std::size_t rowCost, const std::function<void(int begin, int end)>& work,
                 std::shared_ptr<WorkLimit> limit = nullptr);

}  // namespace qv
