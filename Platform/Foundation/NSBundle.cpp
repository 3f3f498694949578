#include "Platform/Foundation/NSBundle.h"

#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <system_error>

namespace qv {

namespace fs = std::filesystem;

std::shared_ptr<const NSBundle> NSBundle::bundleWithPath(const std::string& path) {
    std::error_code error;
    if (path.empty() || !fs::is_directory(path, error)) return nullptr;
    auto absolute = fs::absolute(path, error);
    if (error) return nullptr;
    absolute = absolute.lexically_normal();
    if (!absolute.has_filename()) absolute = absolute.parent_path();
    return std::shared_ptr<const NSBundle>(new NSBundle(absolute.string()));
}

std::shared_ptr<const NSBundle> NSBundle::bundleForAddress(const void* address) {
    Dl_info info{};
    void* extra = nullptr;
    if (dladdr1(address, &info, &extra, RTLD_DL_LINKMAP) == 0 || extra == nullptr) return nullptr;
    // The loader names the executable as it was called, which may be a bare word found in PATH.
    std::string name = static_cast<const link_map*>(extra)->l_name;
    std::error_code error;
    auto file = fs::canonical(name.empty() ? "/proc/self/exe" : name, error);
    return error ? nullptr : bundleWithPath(file.parent_path().string());
}

std::optional<std::string> NSBundle::pathForResource(std::string_view name, std::string_view type) const {
    std::string file(name);
    if (!type.empty()) file.append(".").append(type);
    if (name.empty() || file.find('\0') != std::string::npos) return std::nullopt;
    // Dots are resolved in the text, so that a link inside the bundle cannot turn ".." into a way out.
    auto inside = fs::path(file).lexically_normal();
    if (inside.is_absolute() || *inside.begin() == ".." || inside == ".") return std::nullopt;
    auto path = fs::path(path_) / inside;
    std::error_code error;
    if (!fs::exists(path, error)) return std::nullopt;
    return path.string();
}

}  // namespace qv
