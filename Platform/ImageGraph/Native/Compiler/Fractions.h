#pragma once

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/Module.h>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv::native {

/// (a·b + 2¹⁴) / 2¹⁵ rounded down, of signed 16-bit numbers, an even number of them; not both may be −2¹⁵.
/// Every target has an instruction for it, which compilers do not find: the call stands for it until the
/// target is known.
llvm::Value* multiplyFractions(llvm::IRBuilder<>& ir, llvm::Value* a, llvm::Value* b);

/// Makes the calls what they stand for.
void lowerFractions(llvm::Module& module, NativeTarget target);

}  // namespace qv::native
