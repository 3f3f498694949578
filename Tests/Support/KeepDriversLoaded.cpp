// The Vulkan loader unloads drivers and layers when a context goes. What they leak could then no longer be
// told from what this project leaks, and what the thread sanitizer is told to leave out must not go away, so under
// either they stay loaded.

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

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
