#include "Platform/ImageGraph/Native/NativeComponent.h"

#include <dlfcn.h>

#include <mutex>

#include "Platform/Foundation/Log.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/ImageGraph/Native/CompilerVersion.h"

namespace qv {

namespace {

constexpr const char* kEntryName = "qvNativeCompiler";

const NativeCompiler* load(std::string& error) {
    const std::string path = nativeComponentPath();
    if (path.empty()) {
        error = std::string(kNativeComponentName) + " is not installed";
        return nullptr;
    }
    // It stays loaded: its compiler's own objects live as long as the process.
    void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!library) {
        const char* cause = ::dlerror();
        error = cause ? oneLine(cause) : path + ": cannot be loaded";
        return nullptr;
    }
    const auto entry = reinterpret_cast<NativeCompilerEntry>(::dlsym(library, kEntryName));
    const NativeCompiler* const compiler = entry ? entry(kNativeInterfaceVersion) : nullptr;
    if (compiler && compiler->version() == kNativeCompilerSources) return compiler;
    error = path + ": belongs to another version of the library";
    return nullptr;
}

class Component final : public NativeCompiler {
  public:
    std::string version() const override { return kNativeCompilerSources; }

    std::vector<std::byte> compile(const NativeKernelSource& source, NativeTarget target,
                                   std::string* error) const override {
        std::string cause;
        const NativeCompiler* const compiler = loaded(cause);
        if (compiler) return compiler->compile(source, target, error);
        if (error) *error = cause;
        return {};
    }

  private:
    const NativeCompiler* loaded(std::string& error) const {
        std::scoped_lock lock(mutex_);
        if (!compiler_) compiler_ = load(error);
        return compiler_;
    }

    mutable std::mutex mutex_;
    mutable const NativeCompiler* compiler_ = nullptr;
};

}  // namespace

std::string nativeComponentPath() {
    const auto folder = NSBundle::bundleForAddress(reinterpret_cast<const void*>(&nativeComponentPath));
    return folder ? folder->pathForResource(kNativeComponentName).value_or("") : "";
}

const NativeCompiler& nativeCompiler() {
    static const auto* const component = new Component;
    return *component;
}

}  // namespace qv
