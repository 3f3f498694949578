#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Platform/ImageGraph/Native/NativeKernel.h"
#include "Platform/ImageGraph/Planner.h"

namespace qv {

/// Instruction sets that kernels are compiled for. All give the same bytes.
enum class NativeTarget {
    avx2,    ///< x86-64 with AVX2, FMA and F16C
    avx512,  ///< x86-64 with AVX-512 F, BW, DQ and VL besides
    neon     ///< Arm64
};

/// The best of this machine's; nothing when it has none of them.
const NativeTarget* nativeTargetOfMachine();
/// "AVX2", "AVX-512", "NEON".
const char* nativeTargetName(NativeTarget target);

/// What one kernel is compiled from.
struct NativeKernelSource {
    std::string name;                             ///< for messages
    std::span<const std::uint32_t> code;          ///< SPIR-V of a fragment stage, not optimised
    std::vector<TextureFormat> inputs;            ///< of each binding, up to the last that is read
    TextureFormat output = TextureFormat::rgba8;  ///< of the target
};

/// A kernel that can be called for as long as this lives.
class LinkedNativeKernel {
  public:
    virtual ~LinkedNativeKernel() = default;
    virtual NativeKernel function() const = 0;
};

/// The compiler of kernels: the optional component QVFilterNative, a shared object of its own, so that the
/// library links no LLVM. Thread-safe.
class NativeCompiler {
  public:
    virtual ~NativeCompiler() = default;
    /// Its own version and LLVM's: objects of another one are not to be linked.
    virtual std::string version() const = 0;
    /// An object of the target; empty with one line in `error` on failure.
    virtual std::vector<std::byte> compile(const NativeKernelSource& source, NativeTarget target,
                                           std::string* error) const = 0;
    /// Makes an object of this machine's target callable; the bytes must be what `compile` gave. Nil with one
    /// line in `error` on failure, such as when memory cannot be made executable.
    virtual std::shared_ptr<const LinkedNativeKernel> link(std::span<const std::byte> object,
                                                           std::string* error) const = 0;
};

/// Raised when NativeCompiler or the kernels' arguments change.
inline constexpr int kNativeInterfaceVersion = 1;

/// The component's one exported symbol, "qvNativeCompiler": the compiler, which lives as long as the process;
/// nil when the interface has another version.
using NativeCompilerEntry = const NativeCompiler* (*)(int interfaceVersion);

}  // namespace qv
