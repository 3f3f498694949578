#pragma once

#include "Platform/ImageGraph/Native/Compiler/KernelBuilder.h"
#include "Tests/Native/LaneKernel.h"

namespace qv::native::test {

/// A fragment stage as a kernel that can be called; nil, with a failure noted, when it cannot be made.
inline std::shared_ptr<const LoadedKernel> linkedKernel(const NativeKernelSource& source,
                                                        NativeTarget target) {
    llvm::LLVMContext context;
    std::string error;
    const auto module = buildKernel(context, source, &error);
    const auto object = module ? objectOf(*module, target, &error) : std::vector<std::byte>();
    auto kernel = module ? LoadedKernel::load(linkedCode(object, &error), &error) : nullptr;
    if (!kernel) ADD_FAILURE() << error;
    return kernel;
}

}  // namespace qv::native::test
