#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "Platform/ImageGraph/Native/NativeKernel.h"

namespace qv {

/// What a compiled kernel begins with; machine code follows that runs wherever a page begins, and needs
/// nothing but itself.
struct KernelCodeHeader {
    std::uint32_t magic = 0x434B5651;  // "QVKC"
    std::uint32_t entry = 0;           ///< of the kernel, bytes from where the code begins
    bool operator==(const KernelCodeHeader&) const = default;
};

/// A compiled kernel in memory of its own, callable for as long as this lives.
class LoadedKernel {
  public:
    /// `code` must be what NativeCompiler::compile gave, for this machine. Nil with one line in `error` on
    /// failure, such as when memory cannot be made executable.
    static std::shared_ptr<const LoadedKernel> load(std::span<const std::byte> code, std::string* error);
    ~LoadedKernel();
    LoadedKernel(const LoadedKernel&) = delete;
    LoadedKernel& operator=(const LoadedKernel&) = delete;

    NativeKernel function() const { return function_; }

  private:
    LoadedKernel() = default;
    void* pages_ = nullptr;
    std::size_t bytes_ = 0;
    NativeKernel function_ = nullptr;
};

}  // namespace qv
