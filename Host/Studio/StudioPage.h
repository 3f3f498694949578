#pragma once

#include <optional>
#include <string_view>

namespace qv::host {

/// A file of the studio's page, which is part of the tool.
struct StudioFile {
    std::string_view type, bytes;
};

/// Of that name; "" is the page itself. Nothing for another name.
std::optional<StudioFile> studioFile(std::string_view name);

}  // namespace qv::host
