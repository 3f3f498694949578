#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace qv::host {

enum class ProgressStyle {
    none,
    bar,    ///< one line on a terminal, drawn over itself
    lines,  ///< frame=… total=… fps=… time=… eta=…, and progress=end at the end, for programs
};

/// The style for what was asked: `lines` with --progress, none with --quiet or without a terminal.
ProgressStyle progressStyle(bool lines, bool quiet);

/// Tells on standard error how far a command is; what that does not take is lost. Used by one thread at a
/// time.
class Progress {
  public:
    /// `total` counts the same things as `advance`; 0 when it is not known. `unit` names them.
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
