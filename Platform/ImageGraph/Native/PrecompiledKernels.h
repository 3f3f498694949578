#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>

#include "Platform/ImageGraph/Native/KernelLibrary.h"

namespace qv {

/// Objects that the build has compiled for one target, from the files beside the shader libraries that the
/// process has opened. Thread-safe.
class PrecompiledKernels {
  public:
    PrecompiledKernels(NativeTarget target, std::string compilerVersion)
        : target_(target), compilerVersion_(std::move(compilerVersion)) {}

    /// The object of a key; empty when there is none. Lives as long as this.
    std::span<const std::byte> find(std::uint64_t key);

  private:
    const NativeTarget target_;
    const std::string compilerVersion_;
    std::mutex mutex_;
    /// By path; nil where there is none, or none of use.
    std::map<std::string, std::shared_ptr<const KernelLibrary>> libraries_;
};

}  // namespace qv
