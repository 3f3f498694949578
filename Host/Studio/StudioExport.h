#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "Host/CommandLine/JSON.h"
#include "Host/Edit/EditExport.h"

namespace qv::host {

/// Renders projects into one folder, one at a time, on a thread of its own. Thread-safe.
class StudioExport {
  public:
    /// `output` holds how clips are made. `tell` is told how it goes: {state, file, frames, total, seconds,
    /// left, error}; `state` is "running", "done", "failed" or "cancelled".
    StudioExport(std::filesystem::path folder, EditOutput output, std::function<void(const Json&)> tell);
    /// Cancels what is under way.
    ~StudioExport();

    /// Where a file of that name would lie. Fails as usage unless it is the name of a file in the folder and
    /// of nothing that leads out of it.
    std::filesystem::path target(const std::string& name) const;
    /// Begins a clip, or a picture of one moment where the name is a picture's. An existing file is replaced
    /// only when that was allowed. Fails as usage when the name is not allowed or one is under way, and as
    /// output when the file exists.
    void start(Project project, double seconds, const std::string& name, bool replace);
    void cancel() { cancelled_ = true; }
    /// What was told last; null before that.
    Json state() const;

  private:
    void run(const Project& project, double seconds, const EditOutput& output);
    void report(Json state);

    std::filesystem::path folder_;
    EditOutput output_;
    std::function<void(const Json&)> tell_;
    std::mutex startMutex_;
    std::atomic<bool> isRunning_{false}, cancelled_{false};
    mutable std::mutex stateMutex_;
    std::string last_ = "null";  ///< what was told, as text
    std::thread thread_;
};

}  // namespace qv::host
