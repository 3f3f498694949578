#pragma once

#include <string>
#include <vector>

#include "Host/CommandLine/CommandParser.h"

namespace qv::host {

/// The shells that a script can be made for.
enum class Shell { bash, zsh };

/// A script that completes the tool's command lines: commands, options, words, class names, properties and
/// their values. It needs neither the tool nor anything else to be installed.
std::string completionScript(Shell shell, const std::vector<CommandFacts>& commands);

}  // namespace qv::host
