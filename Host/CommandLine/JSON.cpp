#include "Host/CommandLine/JSON.h"

#include <nlohmann/json.hpp>

namespace qv::host {

std::string dump(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace qv::host
