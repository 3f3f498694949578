#pragma once

#include <string>

#include "QVFilterCore/QVFilterClass.h"

/// How a class is used, as text to copy.
namespace qv::host {

/// A command line of the tool that shows the class on files with telling names. `setting` is a further
/// "name=value", or empty.
std::string usageCommand(const QVFilterClass& filterClass, const std::string& setting);

/// The same in C++: creates the filter, sets the setting, and gives it the inputs and the time of one frame.
/// The text expects variables of the names that it uses.
std::string usageSnippet(const QVFilterClass& filterClass, const std::string& setting);

}  // namespace qv::host
