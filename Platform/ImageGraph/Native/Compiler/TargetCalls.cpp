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

constexpr llvm::StringLiteral kMultiply = "qv.multiplyFractions.", kPick = "qv.pickWords.",
                              kLarger = "qv.larger.", kSmaller = "qv.smaller.";

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

/// A call of a function that is none, of two values of a type that also comes out.
Value* callOf(llvm::IRBuilder<>& ir, llvm::StringRef name, Value* a, Value* b) {
    llvm::Module* const module = ir.GetInsertBlock()->getModule();
    const auto* const vector = llvm::dyn_cast<FixedVectorType>(a->getType());
    const std::string full = name.str() + std::to_string(vector ? vector->getNumElements() : 1);
    llvm::FunctionCallee callee = module->getOrInsertFunction(full, a->getType(), a->getType(), a->getType());
    auto* const function = llvm::cast<llvm::Function>(callee.getCallee());
    function->setDoesNotAccessMemory();
    function->setDoesNotThrow();
    function->addFnAttr(llvm::Attribute::WillReturn);
    function->addFnAttr(llvm::Attribute::Speculatable);
    return ir.CreateCall(callee, {a, b});
}

/// Of vectors for AVX-512 the instruction itself: LLVM would draw a product with the result into a choice
/// between it and 1, which takes three.
Value* extreme(llvm::IRBuilder<>& ir, const Extreme& of, NativeTarget target) {
    constexpr int kCurrentRounding = 4;
    if (target == NativeTarget::avx512 && of.first->getType()->isVectorTy()) {
        return ir.CreateIntrinsic(
            of.isLarger ? llvm::Intrinsic::x86_avx512_max_ps_512 : llvm::Intrinsic::x86_avx512_min_ps_512, {},
            {of.first, of.otherwise, ir.getInt32(kCurrentRounding)});
    }
    return ir.CreateSelect(
        of.isLarger ? ir.CreateFCmpOGT(of.first, of.otherwise) : ir.CreateFCmpOLT(of.first, of.otherwise),
        of.first, of.otherwise);
}

/// What a call of the function of that name stands for.
Value* lowered(llvm::IRBuilder<>& ir, llvm::StringRef name, Value* a, Value* b, NativeTarget target) {
    if (name.startswith(kMultiply)) return product(ir, a, b, instructionOf(target));
    if (name.startswith(kPick)) return picked(ir, a, b, target);
    return extreme(ir, {name.startswith(kLarger), a, b}, target);
}

}  // namespace

Value* multiplyFractions(llvm::IRBuilder<>& ir, Value* a, Value* b) {
    return callOf(ir, kMultiply, a, b);
}
Value* pickWords(llvm::IRBuilder<>& ir, Value* words, Value* places) {
    return callOf(ir, kPick, words, places);
}
Value* larger(llvm::IRBuilder<>& ir, Value* a, Value* b) {
    return callOf(ir, kLarger, a, b);
}
Value* smaller(llvm::IRBuilder<>& ir, Value* a, Value* b) {
    return callOf(ir, kSmaller, a, b);
}

std::optional<Extreme> extremeOf(Value* value) {
    const auto* const call = llvm::dyn_cast<llvm::CallInst>(value);
    const llvm::Function* const function = call ? call->getCalledFunction() : nullptr;
    const bool isLarger = function && function->getName().startswith(kLarger);
    if (!isLarger && !(function && function->getName().startswith(kSmaller))) return std::nullopt;
    return Extreme{isLarger, call->getArgOperand(0), call->getArgOperand(1)};
}

void lowerTargetCalls(llvm::Module& module, NativeTarget target) {
    for (llvm::Function& function : llvm::make_early_inc_range(module)) {
        if (!function.getName().startswith("qv.")) continue;
        for (llvm::User* user : llvm::make_early_inc_range(function.users())) {
            auto* const call = llvm::cast<llvm::CallInst>(user);
            llvm::IRBuilder<> ir(call);
            call->replaceAllUsesWith(
                lowered(ir, function.getName(), call->getArgOperand(0), call->getArgOperand(1), target));
            call->eraseFromParent();
        }
        function.eraseFromParent();
    }
}

}  // namespace qv::native
