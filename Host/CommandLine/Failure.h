#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include <fmt/format.h>

namespace qv::host {

/// What the tool's exit status tells a caller. Documented in Docs/qvfilter.md and `qvfilter --help`.
enum class ExitCode {
    success = 0,
    internal = 1,  ///< a fault of the tool or the library
    usage = 2,     ///< wrong options, an unknown class or property, a value out of range
    input = 3,     ///< an input that is missing, unreadable or damaged
    device = 4,    ///< no usable Vulkan device, or it was lost
    output = 5,    ///< an output that exists, cannot be written or is full
    interrupted = 130,
};

/// Ends a command with one line on standard error and an exit status.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& line) : std::runtime_error(line), code_(code) {}
    ExitCode code() const { return code_; }

  private:
    ExitCode code_;
};

template <typename... Arguments>
[[noreturn]] void fail(ExitCode code, fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    throw Failure(code, fmt::format(format, std::forward<Arguments>(arguments)...));
}

}  // namespace qv::host
