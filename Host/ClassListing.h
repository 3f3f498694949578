#pragma once

#include <string>
#include <string_view>

#include "Host/PropertyJSON.h"

namespace qv::host {

/// "effect", "transition" or "auxiliary".
std::string_view kindName(QVFilterKind kind);

/// Everything that the class object says, with the properties' defaults as a new instance has them.
Json classToJSON(const QVFilterClass& filterClass);

/// The same for reading.
std::string classToText(const QVFilterClass& filterClass);

}  // namespace qv::host
