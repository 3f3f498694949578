#include "Host/CommandLine/Progress.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>

#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/StandardStreams.h"

#include <fmt/format.h>

namespace qv::host {

namespace {
constexpr int kBarCells = 24;
constexpr std::chrono::milliseconds kBarInterval{100}, kLineInterval{500};
}  // namespace

void ProgressOptions::add(const Command& command, const char* quietHelp) {
    const CommandOption plain =
        command.flag("--progress", lines, "Progress as lines for programs, on standard error");
    command.flag("--json-progress", json, "The same as a JSON object a line").excludes(plain);
    command.flag("--quiet", quiet, quietHelp);
}

ProgressStyle ProgressOptions::style() const {
    if (json) return ProgressStyle::json;
    if (lines) return ProgressStyle::lines;
    return quiet || !::isatty(STDERR_FILENO) ? ProgressStyle::none : ProgressStyle::bar;
}

std::string clockText(double seconds) {
    const auto whole = std::int64_t(std::llround(std::clamp(seconds, 0.0, 1e9)));
    if (whole < 3600) return fmt::format("{}:{:02}", whole / 60, whole % 60);
    return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

Progress::Progress(ProgressStyle style, std::int64_t total, std::string unit)
    : style_(style), total_(std::max<std::int64_t>(total, 0)), unit_(std::move(unit)) {}

Progress::~Progress() {
    if (shown_ && style_ == ProgressStyle::bar) writeStandardError("\r\033[K");
}

void Progress::advance(std::int64_t done, double seconds) {
    done_ = done;
    seconds_ = seconds;
    if (style_ == ProgressStyle::none) return;
    const auto now = Clock::now();
    if (now - printed_ < (style_ == ProgressStyle::bar ? kBarInterval : kLineInterval)) return;
    printed_ = now;
    print(false);
}

void Progress::finish() {
    if (style_ != ProgressStyle::none) print(true);
}

void Progress::printJSON(bool last, std::int64_t total, double rate, std::optional<double> left) const {
    writeStandardError(fmt::format(
        R"({{"frame": {}, "frames": {}, "fps": {:.2f}, "seconds": {:.3f}, "eta": {}, "phase": "{}"}})"
        "\n",
        done_, total > 0 ? fmt::format("{}", total) : "null", rate, seconds_,
        left ? fmt::format("{:.1f}", *left) : "null", last ? "end" : unit_));
}

void Progress::print(bool last) {
    const double elapsed = std::chrono::duration<double>(Clock::now() - start_).count();
    const double rate = elapsed > 0 ? double(done_) / elapsed : 0;
    const std::int64_t total = last ? done_ : total_;
    const bool known = total > 0 && rate > 0;
    const double left = known ? double(std::max<std::int64_t>(total - done_, 0)) / rate : 0;
    if (style_ == ProgressStyle::json) {
        printJSON(last, total, rate, known ? std::optional(left) : std::nullopt);
        return;
    }
    if (style_ == ProgressStyle::lines) {
        writeStandardError(fmt::format("frame={} total={} fps={:.2f} time={:.3f} eta={} progress={}\n", done_,
                                       total > 0 ? fmt::format("{}", total) : "unknown", rate, seconds_,
                                       known ? fmt::format("{:.1f}", left) : "unknown",
                                       last ? "end" : "continue"));
        return;
    }
    std::string line = fmt::format("{} {}  {:.1f} a second", done_, unit_, rate);
    if (last) {
        line += fmt::format("  in {}", clockText(elapsed));
    } else if (known) {
        const double share = std::min(1.0, double(done_) / double(total));
        const int full = int(share * kBarCells);
        line = fmt::format("[{:#<{}}{:-<{}}] {:3.0f}%  {}/{} {}  {:.1f} {}  {} left", "", full, "",
                           kBarCells - full, share * 100, done_, total, unit_, rate,
                           unit_ == "frames" ? "fps" : "a second", clockText(left));
    }
    writeStandardError(fmt::format("\r\033[K{}{}", line, last ? "\n" : ""));
    shown_ = !last;
}

}  // namespace qv::host
