#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/ImageGraph/ShaderCompiler/ShaderCache.h"
#include "Platform/ImageGraph/ShaderLibrary.h"

namespace qv {

/// SPIR-V of what is composed at run time, not optimised: compiled in this process, or found on disk.
/// Thread-safe.
class SpirvStore {
  public:
    /// Keeps what it compiles in `cacheDirectory` too, unless that is empty.
    explicit SpirvStore(std::string cacheDirectory) : cache_(std::move(cacheDirectory)) {}

    /// Of a fragment stage in Vulkan GLSL. Empty with one line in `error` when the compiler refuses it.
    std::vector<std::uint32_t> make(const std::string& glsl, std::string* error);
    /// Of a function by itself, whose own code the build has optimised.
    std::vector<std::uint32_t> make(const ShaderFunction& function, std::string* error);

    /// Texts compiled so far: not those found on disk.
    int compiledCount() const { return compiled_; }

  private:
    ShaderCache cache_;
    std::atomic<int> compiled_{0};
};

}  // namespace qv
