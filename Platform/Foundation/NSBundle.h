#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qv {

/// A directory of resources, addressed by file name.
class NSBundle {
  public:
    /// Nil when `path` is not a directory. A relative path is taken from the directory the process is in now.
    static std::shared_ptr<const NSBundle> bundleWithPath(const std::string& path);

    /// The bundle of a loaded library: the directory that holds the shared object (or the executable, when
    /// the code is linked statically) in which `address` lies.
    static std::shared_ptr<const NSBundle> bundleForAddress(const void* address);

    /// The directory, absolute.
    const std::string& path() const { return path_; }

    /// Path of the resource `name` (with `.type` appended unless `type` is empty). Nothing when it does not
    /// exist, or when the name would leave the bundle. A resource may be a directory.
    std::optional<std::string> pathForResource(std::string_view name, std::string_view type = {}) const;

  private:
    explicit NSBundle(std::string path) : path_(std::move(path)) {}
    std::string path_;
};

}  // namespace qv
