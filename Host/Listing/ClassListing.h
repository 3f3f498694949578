#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Host/CommandLine/JSON.h"
#include "QVFilterCore/QVFilterClass.h"

namespace qv::host {

/// A new filter of the class. Fails as internal when there is none.
std::unique_ptr<QVMTIFilter> newInstance(const QVFilterClass& filterClass);

/// "1 to 1080 pixels", without a word for what is a plain number; empty for what holds no numbers. A range
/// that only keeps numbers finite is left out.
std::string rangeText(const QVProperty& property);

/// What `filterClassJSON` says.
Json classToJSON(const QVFilterClass& filterClass);

/// The same for reading.
std::string classToText(const QVFilterClass& filterClass);

}  // namespace qv::host
