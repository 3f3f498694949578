#pragma once

#include <string>
#include <string_view>

#include "QVFilterCore/QVFilterClass.h"

#include <nlohmann/json_fwd.hpp>

namespace qv::host {

using Json = nlohmann::ordered_json;

/// "bool", "int", "float", "point", "size", "color", "colors", "numbers", "transform" or "timeRange".
std::string_view typeName(QVPropertyType type);

/// A number with no more digits than it has: what was a float prints as one.
double shortestNumber(double value);

/// Booleans and numbers as such, colours as "#rrggbb" in an array, everything else as an array of numbers.
Json propertyValueToJSON(const QVPropertyValue& value);

/// As the command line takes it.
std::string propertyValueToText(const QVPropertyValue& value);

/// Pretty-printed, with a line end. Text that is not UTF-8 is replaced.
std::string dump(const Json& json);

}  // namespace qv::host
