#include "Platform/ImageGraph/Native/PrecompiledKernels.h"

#include <filesystem>

#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/ShaderLibrary.h"

namespace qv {

namespace fs = std::filesystem;

std::span<const std::byte> PrecompiledKernels::find(std::uint64_t key) {
    std::scoped_lock lock(mutex_);
    for (const std::string& opened : ShaderLibrary::openedPaths()) {
        const fs::path path = fs::path(opened).replace_filename(KernelLibrary::fileName(target_));
        const auto [place, isNew] = libraries_.try_emplace(path.string());
        std::error_code ignored;
        if (isNew && fs::exists(path, ignored)) {
            std::string cause;
            place->second = KernelLibrary::open(path.string(), compilerVersion_, &cause);
            // Then kernels are compiled as they are wanted.
            if (!place->second) logLineOnce(cause);
        }
        if (!place->second) continue;
        if (const auto object = place->second->object(key); !object.empty()) return object;
    }
    return {};
}

}  // namespace qv
