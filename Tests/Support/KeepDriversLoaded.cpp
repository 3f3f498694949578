// The Vulkan loader unloads drivers and layers when a context goes. What they leak could then no longer be
// told from what this project leaks, so under the address sanitizer they stay loaded.

#if defined(__SANITIZE_ADDRESS__)

#include <dlfcn.h>

#include <initializer_list>

namespace {

const bool driversStayLoaded = [] {
    for (const char* library : {"libvulkan_lvp.so", "libVkLayer_khronos_validation.so"}) {
        dlopen(library, RTLD_NOW | RTLD_NODELETE);
    }
    return true;
}();

}  // namespace

#endif
