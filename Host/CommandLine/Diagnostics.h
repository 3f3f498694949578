#pragma once

#include <string>

namespace qv::host {

/// Keeps the library's log lines instead of printing them, so that a failure stays one line.
void keepLogLines();

/// The last line that the library logged, as " (line)"; empty when there was none.
std::string lastLogLineInBrackets();

}  // namespace qv::host
