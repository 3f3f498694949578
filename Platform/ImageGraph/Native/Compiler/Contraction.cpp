#include "Platform/ImageGraph/Native/Compiler/Contraction.h"

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>

#include <vector>

namespace qv::native {

namespace {

using llvm::Instruction;
using llvm::Value;

Instruction* productOf(Value* value) {
    auto* const product = llvm::dyn_cast<Instruction>(value);
    const bool isOne = product && product->getOpcode() == Instruction::FMul && product->hasOneUse() &&
                       product->getType()->getScalarType()->isFloatTy();
    return isOne ? product : nullptr;
}

/// Nil when the sum has no product that only it uses.
Value* contracted(Instruction& sum) {
    const bool isDifference = sum.getOpcode() == Instruction::FSub;
    if (!isDifference && sum.getOpcode() != Instruction::FAdd) return nullptr;
    Instruction* product = productOf(sum.getOperand(0));
    const bool isFirst = product != nullptr;
    if (!isFirst) product = productOf(sum.getOperand(1));
    if (!product) return nullptr;

    llvm::IRBuilder<> ir(&sum);
    Value *a = product->getOperand(0), *c = sum.getOperand(isFirst ? 1 : 0);
    if (isDifference) (isFirst ? c : a) = ir.CreateFNeg(isFirst ? c : a);
    return ir.CreateIntrinsic(llvm::Intrinsic::fma, {sum.getType()}, {a, product->getOperand(1), c});
}

}  // namespace

void contractProducts(llvm::Function& function) {
    std::vector<Instruction*> sums;
    for (Instruction& instruction : llvm::instructions(function)) sums.push_back(&instruction);
    std::vector<Instruction*> done;
    for (Instruction* sum : sums) {
        Value* const result = contracted(*sum);
        if (!result) continue;
        sum->replaceAllUsesWith(result);
        done.push_back(sum);
    }
    // In reverse: a sum may have been the use of another one's product.
    for (auto sum = done.rbegin(); sum != done.rend(); ++sum) (*sum)->eraseFromParent();
}

}  // namespace qv::native
