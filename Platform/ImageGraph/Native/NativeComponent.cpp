#include "Platform/ImageGraph/Native/NativeComponent.h"

#include <dlfcn.h>

#include <mutex>

#include "Platform/Foundation/Log.h"
#include "Platform/Foundation/NSBundle.h"

namespace qv {

namespace {

constexpr const char* kEntryName = "qvNativeCompiler";

const NativeCompiler* load(std::string& error) {
    const std::string path = nativeComponentPath();
    if (path.empty()) {
        error = std::string(kNativeComponentName) + " is not installed";
        return nullptr;
    }
    // It stays loaded: its kernels and its compiler's own objects live as long as the process.
    void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!library) {
        const char* cause = ::dlerror();
        error = cause ? oneLine(cause) : path + ": cannot be loaded";
        return nullptr;
    }
    const auto entry = reinterpret_cast<NativeCompilerEntry>(::dlsym(library, kEntryName));
    const NativeCompiler* const compiler = entry ? entry(kNativeInterfaceVersion) : nullptr;
    if (!compiler) error = path + ": belongs to another version of the library";
    return compiler;
}

}  // namespace

std::string nativeComponentPath() {
    const auto folder = NSBundle::bundleForAddress(reinterpret_cast<const void*>(&nativeComponentPath));
    return folder ? folder->pathForResource(kNativeComponentName).value_or("") : "";
}

const NativeCompiler* nativeCompiler(std::string* error) {
    static std::mutex mutex;
    static const NativeCompiler* compiler = nullptr;
    std::scoped_lock lock(mutex);
    std::string cause;
    if (!compiler) compiler = load(cause);
    if (!compiler && error) *error = cause;
    return compiler;
}

}  // namespace qv
