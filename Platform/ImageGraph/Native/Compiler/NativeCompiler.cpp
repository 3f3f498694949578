#include "Platform/ImageGraph/Native/NativeCompiler.h"

#include <fmt/format.h>
#include <llvm/Config/llvm-config.h>

#include "Platform/ImageGraph/Native/Compiler/CompilerVersion.h"
#include "Platform/ImageGraph/Native/Compiler/KernelBuilder.h"
#include "Platform/ImageGraph/Native/Compiler/ObjectCode.h"
#include "Platform/ImageGraph/Native/Compiler/ObjectLink.h"

namespace qv::native {

namespace {

class Compiler : public NativeCompiler {
  public:
    std::string version() const override {
        return fmt::format("{} {}, LLVM {}", kNativeInterfaceVersion, kNativeCompilerSources,
                           LLVM_VERSION_STRING);
    }

    std::vector<std::byte> compile(const NativeKernelSource& source, NativeTarget target,
                                   std::string* error) const override {
        llvm::LLVMContext context;
        const std::unique_ptr<llvm::Module> module = buildKernel(context, source, error);
        return module ? objectOf(*module, target, error) : std::vector<std::byte>();
    }

    std::shared_ptr<const LinkedNativeKernel> link(std::span<const std::byte> object,
                                                   std::string* error) const override {
        return linkObject(object, error);
    }
};

}  // namespace

}  // namespace qv::native

/// See qv::NativeCompilerEntry.
extern "C" const qv::NativeCompiler* qvNativeCompiler(int interfaceVersion) {
    static const auto* const compiler = new qv::native::Compiler();
    return interfaceVersion == qv::kNativeInterfaceVersion ? compiler : nullptr;
}
