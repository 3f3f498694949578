#include "Platform/ImageGraph/Native/Compiler/TargetCalls.h"

#include <llvm/IR/IntrinsicsAArch64.h>
#include <llvm/IR/IntrinsicsX86.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <string>
#include <vector>

namespace qv::native {

namespace {

using llvm::FixedVectorType;
using llvm::Value;

constexpr llvm::StringLiteral kMultiply = "qv.multiplyFractions.", kPick = "qv.pickWords";

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

Value* product(llvm::IRBuilder<>& ir, Value* a, Value* b, const Instruction& instruction) {
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

/// One by one.
Value* pickedEach(llvm::IRBuilder<>& ir, Value* words, Value* places) {
    Value* picked = llvm::PoisonValue::get(words->getType());
    for (unsigned i = 0; i < unsigned(kKernelLanes); ++i) {
        Value* const place = ir.CreateAnd(ir.CreateExtractElement(places, i), kKernelLanes - 1);
        picked = ir.CreateInsertElement(picked, ir.CreateExtractElement(words, place), i);
    }
    return picked;
}

/// Of two halves, since instructions have eight words.
Value* pickedOfHalves(llvm::IRBuilder<>& ir, Value* words, Value* places) {
    constexpr unsigned kHalf = kKernelLanes / 2;
    const auto pickedOf = [&](unsigned first, Value* at) {
        return ir.CreateIntrinsic(llvm::Intrinsic::x86_avx2_permd, {}, {part(ir, words, first, kHalf), at});
    };
    std::array<Value*, 2> halves;
    for (unsigned i = 0; i < 2; ++i) {
        Value* const at = part(ir, places, i * kHalf, kHalf);
        Value* const isLower = ir.CreateICmpEQ(ir.CreateAnd(at, kHalf), ir.CreateAnd(at, std::uint64_t(0)));
        halves[i] = ir.CreateSelect(isLower, pickedOf(0, at), pickedOf(kHalf, at));
    }
    std::array<int, kKernelLanes> joined;
    std::iota(joined.begin(), joined.end(), 0);
    return ir.CreateShuffleVector(halves[0], halves[1], joined);
}

Value* picked(llvm::IRBuilder<>& ir, Value* words, Value* places, NativeTarget target) {
    switch (target) {
        case NativeTarget::avx2:
            return pickedOfHalves(ir, words, places);
        case NativeTarget::avx512:
            return ir.CreateIntrinsic(llvm::Intrinsic::x86_avx512_permvar_si_512, {}, {words, places});
        case NativeTarget::neon:
            break;
    }
    return pickedEach(ir, words, places);
}

/// A call of a function that is none, of two vectors of a type that also comes out.
Value* callOf(llvm::IRBuilder<>& ir, llvm::StringRef name, Value* a, Value* b) {
    llvm::Module* const module = ir.GetInsertBlock()->getModule();
    llvm::FunctionCallee callee = module->getOrInsertFunction(name, a->getType(), a->getType(), a->getType());
    auto* const function = llvm::cast<llvm::Function>(callee.getCallee());
    function->setDoesNotAccessMemory();
    function->setDoesNotThrow();
    function->addFnAttr(llvm::Attribute::WillReturn);
    function->addFnAttr(llvm::Attribute::Speculatable);
    return ir.CreateCall(callee, {a, b});
}

}  // namespace

Value* multiplyFractions(llvm::IRBuilder<>& ir, Value* a, Value* b) {
    const unsigned lanes = llvm::cast<FixedVectorType>(a->getType())->getNumElements();
    return callOf(ir, (kMultiply + std::to_string(lanes)).str(), a, b);
}

Value* pickWords(llvm::IRBuilder<>& ir, Value* words, Value* places) {
    return callOf(ir, kPick, words, places);
}

void lowerTargetCalls(llvm::Module& module, NativeTarget target) {
    std::vector<llvm::Function*> functions;
    for (llvm::Function& function : module) {
        if (function.getName().startswith(kMultiply) || function.getName() == kPick)
            functions.push_back(&function);
    }
    for (llvm::Function* function : functions) {
        const std::vector<llvm::User*> calls(function->user_begin(), function->user_end());
        for (llvm::User* user : calls) {
            auto* const call = llvm::cast<llvm::CallInst>(user);
            llvm::IRBuilder<> ir(call);
            Value *const a = call->getArgOperand(0), *const b = call->getArgOperand(1);
            call->replaceAllUsesWith(function->getName() == kPick ? picked(ir, a, b, target)
                                                                  : product(ir, a, b, instructionOf(target)));
            call->eraseFromParent();
        }
        function->eraseFromParent();
    }
}

}  // namespace qv::native
