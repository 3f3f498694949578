#pragma once

#include <memory>

#include "Platform/Foundation/NSBundle.h"

namespace qv {

/// The bundle that holds the library's assets, by file name; nil while there is none (see
/// QVResourceBundle.h).
std::shared_ptr<const NSBundle> qv_ResourcesBundle();

}  // namespace qv
