#pragma once

#include <cstddef>
#include <cstdint>
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

/// The compiler of kernels: the optional component QVFilterNative, a shared object of its own, so that the
/// library links no LLVM. Thread-safe.
class NativeCompiler {
  public:
    virtual ~NativeCompiler() = default;
    /// Changes with its own sources and with LLVM: kernels of another one are not to be loaded.
    virtual std::string version() const = 0;
    /// A kernel of the target, for LoadedKernel; empty with one line in `error` on failure.
    virtual std::vector<std::byte> compile(const NativeKernelSource& source, NativeTarget target,
                                           std::string* error) const = 0;
};

/// Raised when NativeCompiler or the kernels' arguments change.
inline constexpr int kNativeInterfaceVersion = 1;

/// The component's one exported symbol, "qvNativeCompiler": the compiler, which lives as long as the process;
/// nil when the interface has another version.
using NativeCompilerEntry = const NativeCompiler* (*)(int interfaceVersion);

}  // namespace qv
