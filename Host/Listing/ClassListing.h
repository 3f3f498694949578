#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Host/Listing/PropertyJSON.h"

namespace qv::host {

/// A new filter of the class. Fails as internal when there is none.
std::unique_ptr<QVMTIFilter> newInstance(const QVFilterClass& filterClass);

/// "1 to 1080"; empty for what has no range, or one that only keeps numbers finite.
std::string rangeText(const QVProperty& property);

/// "effect", "transition" or "auxiliary".
std::string_view kindName(QVFilterKind kind);

/// Everything that the class object says, with the properties' defaults as a new instance has them.
Json classToJSON(const QVFilterClass& filterClass);

/// The same for reading.
std::string classToText(const QVFilterClass& filterClass);

}  // namespace qv::host
