#include "QVFilterCore/QVResourceBundle.h"

#include <cstdlib>
#include <mutex>
#include <utility>

namespace qv {

namespace {

struct Lookup {
    std::mutex mutex;
    std::string hostPath;
    std::shared_ptr<const NSBundle> found;
};

Lookup& lookup() {
    static Lookup state;
    return state;
}

/// A path that was asked for is not replaced by another bundle when it holds none: the host would not notice.
std::shared_ptr<const NSBundle> find(const std::string& hostPath) {
    if (!hostPath.empty()) return NSBundle::bundleWithPath(hostPath);
    if (const char* path = std::getenv("QVFILTER_BUNDLE"); path != nullptr && *path != '\0')
        return NSBundle::bundleWithPath(path);
    auto library = NSBundle::bundleForAddress(reinterpret_cast<const void*>(&find));
    auto path = library ? library->pathForResource("QVFilterExtension", "bundle") : std::nullopt;
    return path ? NSBundle::bundleWithPath(*path) : nullptr;
}

}  // namespace

std::shared_ptr<const NSBundle> resourceBundle() {
    auto& state = lookup();
    std::scoped_lock lock(state.mutex);
    if (!state.found) state.found = find(state.hostPath);
    return state.found;
}

void setResourceBundlePath(std::string path) {
    auto& state = lookup();
    std::scoped_lock lock(state.mutex);
    state.hostPath = std::move(path);
    state.found = nullptr;
}

}  // namespace qv
