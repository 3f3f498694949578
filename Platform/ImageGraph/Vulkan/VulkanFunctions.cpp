#include "Platform/ImageGraph/Vulkan/VulkanFunctions.h"

#include <dlfcn.h>

namespace qv {

#define QV_FUNCTION(name) PFN_##name name = nullptr;
QV_VULKAN_FUNCTIONS
#undef QV_FUNCTION

namespace {

constexpr const char* kLoader = "libvulkan.so.1";

/// Why Vulkan cannot be used; null when it can.
const char* load() {
    // It stays loaded: images may let go of textures after the last context.
    void* const loader = ::dlopen(kLoader, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!loader) return "the Vulkan loader, libvulkan.so.1, is not installed";
    bool complete = true;
#define QV_FUNCTION(name) complete &= (name = PFN_##name(::dlsym(loader, #name))) != nullptr;
    QV_VULKAN_FUNCTIONS
#undef QV_FUNCTION
    return complete ? nullptr : "the Vulkan loader is older than 1.1";
}

}  // namespace

bool loadVulkan(std::string* error) {
    static const char* const failure = load();
    if (failure && error) *error = failure;
    return !failure;
}

}  // namespace qv
