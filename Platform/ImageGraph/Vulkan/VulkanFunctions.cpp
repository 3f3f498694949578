#include "Platform/ImageGraph/Vulkan/VulkanFunctions.h"

#include <dlfcn.h>

#include "Platform/ImageGraph/Vulkan/VulkanDevice.h"

namespace qv {

#define QV_DEFINE(name) PFN_##name name = nullptr;
QV_VULKAN_FUNCTIONS(QV_DEFINE)
#undef QV_DEFINE

namespace {

bool loadAll() {
    void* library = dlopen("libvulkan.so.1", RTLD_NOW | RTLD_LOCAL);
    if (!library) throw VulkanError("no Vulkan loader is installed (libvulkan.so.1)");
#define QV_FIND(name)                                           \
    name = reinterpret_cast<PFN_##name>(dlsym(library, #name)); \
    if (!name) throw VulkanError("the Vulkan loader lacks " #name);
    QV_VULKAN_FUNCTIONS(QV_FIND)
#undef QV_FIND
    return true;
}

}  // namespace

void loadVulkan() {
    // Tried anew by the next caller when it throws.
    [[maybe_unused]] static const bool isLoaded = loadAll();
}

}  // namespace qv
