#pragma once

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/Module.h>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv::native {

// What targets have instructions for that portable code does not lead to: a call stands for them until the
// target is known.

/// (a·b + 2¹⁴) / 2¹⁵ rounded down, of signed 16-bit numbers, an even number of them; not both may be −2¹⁵.
llvm::Value* multiplyFractions(llvm::IRBuilder<>& ir, llvm::Value* a, llvm::Value* b);
/// Of sixteen words, the one at each lane's place, modulo 16.
llvm::Value* pickWords(llvm::IRBuilder<>& ir, llvm::Value* words, llvm::Value* places);

/// Makes the calls what they stand for.
void lowerTargetCalls(llvm::Module& module, NativeTarget target);

}  // namespace qv::native
