#pragma once

#include <llvm/ExecutionEngine/Orc/LLJIT.h>
#include <llvm/Support/TargetSelect.h>

#include <memory>
#include <string>
#include <vector>

#include "Platform/ImageGraph/Native/Compiler/KernelBuilder.h"
#include "Platform/ImageGraph/ShaderCompiler/GlslCompiler.h"
#include "Tests/Support/Picture.h"

/// Kernels built and called in this process, as the builder gives them: not optimised.
namespace qv::test {

/// A texture with the room behind its rows and its last row that kernels count on.
class KernelTexture {
  public:
    KernelTexture(int width, int height, TextureFormat format) {
        image_.width = width;
        image_.height = height;
        image_.rowBytes = (std::int64_t(width) + 2 * kKernelLanes) * texelBytes(format) / 64 * 64 + 64;
        memory_.resize(std::size_t(image_.rowBytes) * std::size_t(height + 2));
        image_.pixels = memory_.data();
    }
    const NativeImage& image() const { return image_; }
    std::uint8_t* row(int y) { return memory_.data() + y * image_.rowBytes; }

  private:
    NativeImage image_;
    std::vector<std::uint8_t> memory_;
};

struct BuiltKernel {
    std::unique_ptr<llvm::orc::LLJIT> jit;
    NativeKernel function = nullptr;
    std::string error;
};

inline BuiltKernel buildTestKernel(const NativeKernelSource& source) {
    static const bool ready = !llvm::InitializeNativeTarget() && !llvm::InitializeNativeTargetAsmPrinter();
    BuiltKernel built;
    auto context = std::make_unique<llvm::LLVMContext>();
    auto module = native::buildKernel(*context, source, &built.error);
    if (!module || !ready) return built;
    const auto fails = [&](llvm::Error error) {
        if (!error) return false;
        built.error = llvm::toString(std::move(error));
        return true;
    };
    auto jit = llvm::orc::LLJITBuilder().create();
    if (!jit) return fails(jit.takeError()), std::move(built);
    built.jit = std::move(*jit);
    if (fails(built.jit->addIRModule({std::move(module), std::move(context)}))) return built;
    auto symbol = built.jit->lookup(kNativeKernelSymbol);
    if (!symbol) return fails(symbol.takeError()), std::move(built);
    built.function = symbol->toPtr<NativeKernel>();
    return built;
}

}  // namespace qv::test
