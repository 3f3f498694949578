#pragma once

#include <memory>
#include <string>

#include "Platform/Foundation/NSBundle.h"

namespace qv {

/// The bundle with the library's assets and its compiled shaders; nil while there is none. It is looked for
/// at the path that the host set; without one, at the path in the environment variable QVFILTER_BUNDLE;
/// without that, in the directory QVFilterExtension.bundle beside this library. A bundle once found is kept;
/// a missing one is looked for again on the next call. Thread-safe.
std::shared_ptr<const NSBundle> resourceBundle();

/// Where later calls of `resourceBundle` look, instead of the bundle they have found so far. An empty path
/// restores the search. What was loaded from the earlier bundle stays. Thread-safe.
void setResourceBundlePath(std::string path);

}  // namespace qv
