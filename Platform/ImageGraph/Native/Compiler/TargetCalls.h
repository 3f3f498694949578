#pragma once

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/Module.h>

#include <optional>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv::native {

// What targets have instructions for that portable code does not lead to, or no longer when LLVM has
// rewritten it: a call stands for them until the code is as it is to be.

/// (a·b + 2¹⁴) / 2¹⁵ rounded down, of signed 16-bit numbers, an even number of them; not both may be −2¹⁵.
llvm::Value* multiplyFractions(llvm::IRBuilder<>& ir, llvm::Value* a, llvm::Value* b);
/// Of sixteen words, the one at each lane's place, modulo 16.
llvm::Value* pickWords(llvm::IRBuilder<>& ir, llvm::Value* words, llvm::Value* places);

/// a > b ? a : b and a < b ? a : b, of floats. LLVM would draw what is done with the result into the choice,
/// which then is none that there is an instruction for.
llvm::Value* larger(llvm::IRBuilder<>& ir, llvm::Value* a, llvm::Value* b);
llvm::Value* smaller(llvm::IRBuilder<>& ir, llvm::Value* a, llvm::Value* b);

/// A value that is the larger or the smaller one of two: `otherwise` where one is no number.
struct Extreme {
    bool isLarger;
    llvm::Value *first, *otherwise;
};
/// Nothing for values of other kinds.
std::optional<Extreme> extremeOf(llvm::Value* value);

/// Makes the calls what they stand for.
void lowerTargetCalls(llvm::Module& module, NativeTarget target);

}  // namespace qv::native
