#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace qv::host {

using Json = nlohmann::ordered_json;

/// Pretty-printed, with a line end. Text that is not UTF-8 is replaced.
std::string dump(const Json& json);

}  // namespace qv::host
