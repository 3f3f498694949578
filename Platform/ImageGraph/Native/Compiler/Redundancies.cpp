#include "Platform/ImageGraph/Native/Compiler/Redundancies.h"

#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/PatternMatch.h>
#include <llvm/IR/ValueHandle.h>

#include <utility>
#include <vector>

#include "Platform/ImageGraph/Native/Compiler/ValueFacts.h"

namespace qv::native {

namespace {

using llvm::Instruction;
using llvm::Value;

/// What is compared with itself, or with a constant, to see whether it is a number; nil for other
/// comparisons.
Value* checkedBy(const llvm::FCmpInst& compare) {
    const auto predicate = compare.getPredicate();
    if (predicate != llvm::FCmpInst::FCMP_UNO && predicate != llvm::FCmpInst::FCMP_ORD) return nullptr;
    Value *const a = compare.getOperand(0), *const b = compare.getOperand(1);
    return a == b || llvm::PatternMatch::match(b, llvm::PatternMatch::m_NonNaN()) ? a : nullptr;
}

void dropNumberChecks(llvm::Function& function) {
    std::vector<llvm::FCmpInst*> compares;
    for (Instruction& instruction : llvm::instructions(function)) {
        if (auto* compare = llvm::dyn_cast<llvm::FCmpInst>(&instruction)) compares.push_back(compare);
    }
    ValueFacts facts;
    for (llvm::FCmpInst* compare : compares) {
        Value* const checked = checkedBy(*compare);
        if (!checked || !facts.isNumber(checked)) continue;
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

/// The one of the two that it is in any case; nil when that depends.
Value* chosenAnyway(ValueFacts& facts, const Extreme& extreme) {
    if (!facts.isNumber(extreme.first) || !facts.isNumber(extreme.otherwise)) return nullptr;
    const ValueRange first = facts.range(extreme.first), otherwise = facts.range(extreme.otherwise);
    const bool isFirst = extreme.isLarger ? first.low >= otherwise.high : first.high <= otherwise.low;
    const bool isOther = extreme.isLarger ? otherwise.low >= first.high : otherwise.high <= first.low;
    return isFirst ? extreme.first : isOther ? extreme.otherwise : nullptr;
}

}  // namespace

void dropNeedlessChecks(llvm::Function& function) {
    dropNumberChecks(function);
    dropRepeatedClamps(function);
}

void dropNeedlessBounds(llvm::Function& function) {
    ValueFacts facts;
    // What one is replaced by may be replaced in its turn.
    std::vector<std::pair<Instruction*, llvm::WeakTrackingVH>> needless;
    for (Instruction& instruction : llvm::instructions(function)) {
        const auto extreme = extremeOf(&instruction);
        if (Value* const chosen = extreme ? chosenAnyway(facts, *extreme) : nullptr)
            needless.emplace_back(&instruction, chosen);
    }
    for (const auto& [instruction, chosen] : needless) {
        instruction->replaceAllUsesWith(chosen);
        instruction->eraseFromParent();
    }
}

}  // namespace qv::native
