#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace qv {

/// Receives each log line, without its line end. Called from any thread, one call at a time; it must not log
/// itself.
using LogSink = std::function<void(std::string_view line)>;

/// Replaces the sink; an empty function restores the default, which writes to standard error.
void setLogSink(LogSink sink);

/// A text with its line breaks as spaces, for messages that quote what they were given.
std::string oneLine(std::string_view text);

/// Sends one line to the sink; line breaks within it become spaces. The library logs only what the host
/// cannot learn otherwise.
void logLine(std::string_view line);
/// The same, unless this line has been sent in this way before: for what is tried again and again.
void logLineOnce(std::string_view line);

}  // namespace qv
