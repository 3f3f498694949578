#include "Platform/ImageGraph/Native/Compiler/Redundancies.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/Analysis/VectorUtils.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/PatternMatch.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/ImageGraph/Native/NativeKernel.h"

namespace qv::native {

namespace {

using llvm::Instruction;
using llvm::Value;

/// A constant, the same in all lanes.
const llvm::APFloat* constantOf(const Value* value) {
    const llvm::APFloat* number = nullptr;
    return llvm::PatternMatch::match(value, llvm::PatternMatch::m_APFloat(number)) ? number : nullptr;
}

/// Which of the words it is that a kernel is called with, in bytes; nothing when it is none.
std::optional<std::int64_t> uniformAt(const Value* value) {
    const auto* load = llvm::dyn_cast<llvm::LoadInst>(value);
    if (!load) return std::nullopt;
    const llvm::DataLayout& layout = load->getModule()->getDataLayout();
    std::int64_t place = 0, field = 0;
    const auto* words = llvm::dyn_cast<llvm::LoadInst>(
        llvm::GetPointerBaseWithConstantOffset(load->getPointerOperand(), place, layout));
    if (!words) return std::nullopt;
    const Value* arguments =
        llvm::GetPointerBaseWithConstantOffset(words->getPointerOperand(), field, layout);
    const bool isOne =
        llvm::isa<llvm::Argument>(arguments) && field == offsetof(NativeKernelArguments, words);
    return isOne ? std::optional(place) : std::nullopt;
}

/// The comparison by which it chooses the larger or the smaller one; nil when it chooses otherwise.
const llvm::FCmpInst* comparisonOf(const llvm::SelectInst& select) {
    const auto* compare = llvm::dyn_cast<llvm::FCmpInst>(select.getCondition());
    if (!compare || compare->getOperand(0) != select.getTrueValue() ||
        compare->getOperand(1) != select.getFalseValue())
        return nullptr;
    const auto predicate = compare->getPredicate();
    const bool isOne = predicate == llvm::FCmpInst::FCMP_OGT || predicate == llvm::FCmpInst::FCMP_OLT;
    return isOne ? compare : nullptr;
}

/// Whether it is above 0: a side of the output, a constant, or the larger one of something and a constant.
bool isPositive(const Value* value) {
    constexpr std::int64_t kSizeBytes = 8;  // the first two words
    if (const auto place = uniformAt(value)) return *place < kSizeBytes;
    if (const llvm::APFloat* number = constantOf(value))
        return !number->isNaN() && !number->isNegative() && !number->isZero();
    if (const Value* same = llvm::getSplatValue(value)) return isPositive(same);
    const auto* select = llvm::dyn_cast<llvm::SelectInst>(value);
    const auto* compare = select ? comparisonOf(*select) : nullptr;
    return compare && compare->getPredicate() == llvm::FCmpInst::FCMP_OGT &&
           isPositive(select->getFalseValue());
}

/// Values that are known to be finite numbers.
class Numbers {
  public:
    bool contains(Value* value) {
        const auto [entry, isNew] = known_.try_emplace(value, false);  // what depends on itself is not known
        if (!isNew) return entry->second;
        const bool isOne = find(value);
        known_[value] = isOne;
        return isOne;
    }

  private:
    bool find(Value* value) {
        if (const llvm::APFloat* number = constantOf(value)) return number->isFinite();
        if (llvm::isa<llvm::UndefValue>(value)) return true;  // lanes that a shuffle fills
        auto* const instruction = llvm::dyn_cast<Instruction>(value);
        if (!instruction) return false;
        const auto operand = [&](unsigned i) { return contains(instruction->getOperand(i)); };
        switch (instruction->getOpcode()) {
            case Instruction::UIToFP:
            case Instruction::SIToFP:
                return true;
            case Instruction::Load:
                return uniformAt(value).has_value();
            case Instruction::FNeg:
            case Instruction::ExtractElement:
                return operand(0);
            case Instruction::FAdd:
            case Instruction::FSub:
            case Instruction::FMul:
            case Instruction::InsertElement:
            case Instruction::ShuffleVector:
                return operand(0) && operand(1);
            case Instruction::FDiv:
                return operand(0) && isPositive(instruction->getOperand(1)) && operand(1);
            case Instruction::Select:
                return isChosenNumber(*llvm::cast<llvm::SelectInst>(instruction));
            case Instruction::PHI:
                return llvm::all_of(llvm::cast<llvm::PHINode>(instruction)->incoming_values(),
                                    [&](Value* from) { return contains(from); });
            case Instruction::Call:
                return isNumberOf(*instruction);
            default:
                return false;
        }
    }

    bool isChosenNumber(llvm::SelectInst& select) {
        if (!contains(select.getFalseValue())) return false;
        return contains(select.getTrueValue()) || isClamp(select);
    }

    /// Whether it is the smaller one of a number and the larger one of a number and anything, or the other
    /// way round. A comparison with what is no number is false, and the second is chosen.
    bool isClamp(llvm::SelectInst& select) {
        const auto* outer = comparisonOf(select);
        auto* const bounded = llvm::dyn_cast<llvm::SelectInst>(select.getTrueValue());
        const auto* inner = bounded ? comparisonOf(*bounded) : nullptr;
        return outer && inner && inner->getPredicate() == outer->getSwappedPredicate() &&
               contains(bounded->getFalseValue());
    }

    bool isNumberOf(Instruction& call) {
        const auto* intrinsic = llvm::dyn_cast<llvm::IntrinsicInst>(&call);
        if (!intrinsic) return false;
        switch (intrinsic->getIntrinsicID()) {
            case llvm::Intrinsic::fabs:
            case llvm::Intrinsic::floor:
            case llvm::Intrinsic::ceil:
            case llvm::Intrinsic::trunc:
            case llvm::Intrinsic::rint:
            case llvm::Intrinsic::nearbyint:
            case llvm::Intrinsic::roundeven:
            case llvm::Intrinsic::fma:
                return llvm::all_of(intrinsic->args(), [&](Value* argument) { return contains(argument); });
            default:
                return false;
        }
    }

    llvm::DenseMap<Value*, bool> known_;
};

/// What is compared with itself, or with a constant, to see whether it is a number; nil for other
/// comparisons.
Value* checkedBy(const llvm::FCmpInst& compare) {
    const auto predicate = compare.getPredicate();
    if (predicate != llvm::FCmpInst::FCMP_UNO && predicate != llvm::FCmpInst::FCMP_ORD) return nullptr;
    Value *const a = compare.getOperand(0), *const b = compare.getOperand(1);
    const llvm::APFloat* const constant = constantOf(b);
    return a == b || (constant && !constant->isNaN()) ? a : nullptr;
}

void dropNumberChecks(llvm::Function& function) {
    std::vector<llvm::FCmpInst*> compares;
    for (Instruction& instruction : llvm::instructions(function)) {
        if (auto* compare = llvm::dyn_cast<llvm::FCmpInst>(&instruction)) compares.push_back(compare);
    }
    Numbers numbers;
    for (llvm::FCmpInst* compare : compares) {
        Value* const checked = checkedBy(*compare);
        if (!checked || !numbers.contains(checked)) continue;
        const bool isNumber = compare->getPredicate() == llvm::FCmpInst::FCMP_ORD;
        for (llvm::User* user : llvm::make_early_inc_range(compare->users())) {
            auto* const select = llvm::dyn_cast<llvm::SelectInst>(user);
            if (!select || select->getCondition() != compare) continue;
            select->replaceAllUsesWith(isNumber ? select->getTrueValue() : select->getFalseValue());
            select->eraseFromParent();
        }
    }
}

/// A place that is clamped between 0 and `last`, before that; nil when it is not.
Value* clampedBy(Value* value, Value*& last) {
    using namespace llvm::PatternMatch;
    Value *place = nullptr, *larger = nullptr;
    return match(value, m_Intrinsic<llvm::Intrinsic::smin>(m_Value(larger), m_Value(last))) &&
                   match(larger, m_Intrinsic<llvm::Intrinsic::smax>(m_Value(place), m_Zero()))
               ? place
               : nullptr;
}

void dropRepeatedClamps(llvm::Function& function) {
    for (Instruction& instruction : llvm::make_early_inc_range(llvm::instructions(function))) {
        Value *last = nullptr, *lastBefore = nullptr;
        Value* const place = clampedBy(&instruction, last);
        if (!place || !clampedBy(place, lastBefore) || last != lastBefore) continue;
        instruction.replaceAllUsesWith(place);
        instruction.eraseFromParent();
    }
}

}  // namespace

void dropRedundancies(llvm::Function& function) {
    dropNumberChecks(function);
    dropRepeatedClamps(function);
}

}  // namespace qv::native
