#include "Platform/ImageGraph/Native/NativeCompiler.h"

#include "Platform/ImageGraph/Native/Compiler/KernelBuilder.h"
#include "Platform/ImageGraph/Native/Compiler/ObjectCode.h"
#include "Platform/ImageGraph/Native/Compiler/ObjectLink.h"
#include "Platform/ImageGraph/Native/CompilerVersion.h"

namespace qv::native {

namespace {

class Compiler : public NativeCompiler {
  public:
    std::string version() const override { return kNativeCompilerSources; }

    std::vector<std::byte> compile(const NativeKernelSource& source, NativeTarget target,
                                   std::string* error) const override {
        llvm::LLVMContext context;
        const std::unique_ptr<llvm::Module> module = buildKernel(context, source, error);
        if (!module) return {};
        const std::vector<std::byte> object = objectOf(*module, target, error);
        return object.empty() ? object : linkedCode(object, error);
    }
};

}  // namespace

}  // namespace qv::native

/// See qv::NativeCompilerEntry.
extern "C" const qv::NativeCompiler* qvNativeCompiler(int interfaceVersion) {
    static const auto* const compiler = new qv::native::Compiler();
    return interfaceVersion == qv::kNativeInterfaceVersion ? compiler : nullptr;
}
