#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace qv::host {

class Command;

enum class ProgressStyle {
    none,
    bar,    ///< one line on a terminal, drawn over itself
    lines,  ///< frame=… total=… fps=… time=… eta=…, and progress=end at the end, for programs
    json,   ///< an object a line, {frame, frames, fps, seconds, eta, phase}, for programs
};

/// What a command that takes long is to tell of it.
struct ProgressOptions {
    bool lines = false, json = false, quiet = false;

    /// `quietHelp` says what else --quiet keeps from being told.
    void add(const Command& command, const char* quietHelp = "No progress bar");
    /// As asked for; else a bar, but none with --quiet or without a terminal.
    ProgressStyle style() const;
};

/// Tells on standard error how far a command is; what that does not take is lost. Used by one thread at a
/// time.
class Progress {
  public:
    /// `total` counts the same things as `advance`; 0 when it is not known. `unit` names them, as "frames".
    Progress(ProgressStyle style, std::int64_t total, std::string unit);
    /// Removes the bar.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// `done` so far; `seconds` is the clip's time of the last one.
    void advance(std::int64_t done, double seconds);
    /// The last line, when everything is done.
    void finish();

  private:
    void print(bool last);
    void printJSON(bool last, std::int64_t total, double rate, std::optional<double> left) const;

    using Clock = std::chrono::steady_clock;
    ProgressStyle style_;
    std::int64_t total_, done_ = 0;
    double seconds_ = 0;
    std::string unit_;
    Clock::time_point start_ = Clock::now(), printed_ = {};
    bool shown_ = false;
};

/// "4:07" or "1:04:07".
std::string clockText(double seconds);

}  // namespace qv::host
