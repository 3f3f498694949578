#pragma once

#include <string_view>

namespace qv::host {

/// Gives the standard descriptors that the caller closed a place where reading and writing fail. Otherwise
/// the first file opened would take their number, and get what was meant for them. To be called first.
void keepStandardStreams();

/// Writes all of `text` to standard output; fails as output when it does not take it.
void writeStandardOutput(std::string_view text);

/// Writes to standard error. What it does not take is lost: progress and notes are not worth ending for, and
/// of an error the exit status tells.
void writeStandardError(std::string_view text);
/// One line there that the user may want to know.
void writeNote(std::string_view line);

}  // namespace qv::host
