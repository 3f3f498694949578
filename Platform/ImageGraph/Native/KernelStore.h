#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "Platform/ImageGraph/Native/LoadedKernel.h"
#include "Platform/ImageGraph/Native/NativeCompiler.h"
#include "Platform/ImageGraph/Native/PrecompiledKernels.h"
#include "Platform/ImageGraph/Private/PassFuser.h"
#include "Platform/ImageGraph/Private/SpirvStore.h"

namespace qv {

/// Kernels by function and formats, made on first use: from an object that the build or an earlier process
/// has compiled, or now. Thread-safe.
class KernelStore final : public PassPrograms {
  public:
    using Kernel = std::shared_ptr<const LoadedKernel>;

    /// Keeps the objects that it makes in `cacheDirectory` too, unless that is empty.
    KernelStore(const NativeCompiler& compiler, NativeTarget target, const std::string& cacheDirectory)
        : compiler_(compiler),
          target_(target),
          precompiled_(target, compiler.version()),
          spirv_(cacheDirectory),
          objects_(cacheDirectory) {}

    /// Draws the passes of a function for as long as it is held. Throws RenderError.
    Kernel kernel(const std::shared_ptr<const ShaderFunction>& function, const PassFormats& formats);
    bool canDraw(const PlanPass& pass, const PassFormats& formats) override;
    void makeFor(const PlanPass& pass, const PassFormats& formats) override {
        kernel(pass.function, formats);
    }

    /// Kernels made so far, and those of them that had to be compiled.
    int madeCount() const { return made_; }
    int compiledCount() const { return compiled_; }

  private:
    static constexpr std::size_t kMostKernels = 1024;

    /// What a kernel is made of; keeps the function.
    struct Recipe {
        std::shared_ptr<const ShaderFunction> function;
        PassFormats formats;
        auto operator<=>(const Recipe&) const = default;
    };
    struct Entry {
        Kernel kernel;
        std::uint64_t lastUse = 0;
    };

    Kernel find(const Recipe& recipe);
    Kernel make(const Recipe& recipe);
    Kernel compiled(const Recipe& recipe);

    const NativeCompiler& compiler_;
    const NativeTarget target_;
    PrecompiledKernels precompiled_;
    SpirvStore spirv_;
    ShaderCache objects_;
    std::atomic<int> made_{0}, compiled_{0};
    std::mutex mutex_;  ///< guards what follows
    std::map<Recipe, Entry> kernels_;
    std::uint64_t uses_ = 0;
};

}  // namespace qv
