#include "Platform/ImageGraph/Native/Compiler/Fractions.h"

#include <llvm/IR/IntrinsicsAArch64.h>
#include <llvm/IR/IntrinsicsX86.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

namespace qv::native {

namespace {

using llvm::FixedVectorType;
using llvm::Value;

constexpr llvm::StringLiteral kPrefix = "qv.multiplyFractions.";

/// The instruction, and how many numbers it takes.
struct Instruction {
    llvm::Intrinsic::ID id;
    unsigned lanes;
    bool isOverloaded;
};

Instruction instructionOf(NativeTarget target) {
    switch (target) {
        case NativeTarget::avx2:
            return {llvm::Intrinsic::x86_avx2_pmul_hr_sw, 16, false};
        case NativeTarget::avx512:
            return {llvm::Intrinsic::x86_avx512_pmul_hr_sw_512, 32, false};
        case NativeTarget::neon:
            break;
    }
    return {llvm::Intrinsic::aarch64_neon_sqrdmulh, 8, true};
}

/// `count` lanes from `first` on; those behind the end are anything.
Value* part(llvm::IRBuilder<>& ir, Value* vector, unsigned first, unsigned count) {
    std::vector<int> lanes(count);
    std::iota(lanes.begin(), lanes.end(), int(first));
    const unsigned size = llvm::cast<FixedVectorType>(vector->getType())->getNumElements();
    for (int& lane : lanes) lane = lane < int(size) ? lane : -1;
    return ir.CreateShuffleVector(vector, lanes);
}

Value* lowered(llvm::IRBuilder<>& ir, Value* a, Value* b, const Instruction& instruction) {
    const unsigned size = llvm::cast<FixedVectorType>(a->getType())->getNumElements();
    std::vector<Value*> parts;
    for (unsigned first = 0; first < size; first += instruction.lanes) {
        Value* const x = part(ir, a, first, instruction.lanes);
        Value* const y = part(ir, b, first, instruction.lanes);
        parts.push_back(instruction.isOverloaded ? ir.CreateIntrinsic(instruction.id, {x->getType()}, {x, y})
                                                 : ir.CreateIntrinsic(instruction.id, {}, {x, y}));
    }
    for (; parts.size() > 1; parts.resize(parts.size() / 2)) {
        const unsigned lanes = llvm::cast<FixedVectorType>(parts[0]->getType())->getNumElements();
        std::vector<int> joined(2 * lanes);
        std::iota(joined.begin(), joined.end(), 0);
        for (std::size_t i = 0; i < parts.size() / 2; ++i) {
            parts[i] = ir.CreateShuffleVector(parts[2 * i], parts[2 * i + 1], joined);
        }
    }
    return part(ir, parts[0], 0, size);
}

}  // namespace

Value* multiplyFractions(llvm::IRBuilder<>& ir, Value* a, Value* b) {
    const auto* const type = llvm::cast<FixedVectorType>(a->getType());
    llvm::Module* const module = ir.GetInsertBlock()->getModule();
    const std::string name = (kPrefix + std::to_string(type->getNumElements())).str();
    llvm::FunctionCallee callee = module->getOrInsertFunction(name, a->getType(), a->getType(), a->getType());
    auto* const function = llvm::cast<llvm::Function>(callee.getCallee());
    function->setDoesNotAccessMemory();
    function->setDoesNotThrow();
    function->addFnAttr(llvm::Attribute::WillReturn);
    function->addFnAttr(llvm::Attribute::Speculatable);
    return ir.CreateCall(callee, {a, b});
}

void lowerFractions(llvm::Module& module, NativeTarget target) {
    std::vector<llvm::Function*> functions;
    for (llvm::Function& function : module) {
        if (function.getName().startswith(kPrefix)) functions.push_back(&function);
    }
    for (llvm::Function* function : functions) {
        const std::vector<llvm::User*> calls(function->user_begin(), function->user_end());
        for (llvm::User* user : calls) {
            auto* const call = llvm::cast<llvm::CallInst>(user);
            llvm::IRBuilder<> ir(call);
            call->replaceAllUsesWith(
                lowered(ir, call->getArgOperand(0), call->getArgOperand(1), instructionOf(target)));
            call->eraseFromParent();
        }
        function->eraseFromParent();
    }
}

}  // namespace qv::native
