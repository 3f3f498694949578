#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Platform/Foundation/NSBundle.h"

namespace qv {

/// The bundle that holds the library's assets, by file name; nil while there is none (see
/// QVResourceBundle.h).
std::shared_ptr<const NSBundle> qv_ResourcesBundle();

/// Where an asset lies; empty when it is not there.
std::string qv_pathOfAsset(std::string_view fileName);

}  // namespace qv
