#pragma once

#include <llvm/IR/Module.h>

#include <memory>
#include <string>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv::native {

/// A module with one function, kNativeKernelSymbol, of type NativeKernel: the fragment stage for every pixel
/// of the rows, kKernelLanes at a time. No target is set, and products and sums are not contracted yet. Nil
/// with one line in `error` for code that it does not understand.
std::unique_ptr<llvm::Module> buildKernel(llvm::LLVMContext& context, const NativeKernelSource& source,
                                          std::string* error);

}  // namespace qv::native
