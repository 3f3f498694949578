#include "Platform/ImageGraph/Native/Compiler/ValueFacts.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/Analysis/VectorUtils.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/PatternMatch.h>
#include <llvm/Support/KnownBits.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>

#include "Platform/ImageGraph/Native/NativeKernel.h"

namespace qv::native {

namespace {

using llvm::Instruction;
using llvm::Value;

/// Kind of the metadata that `notePart` leaves.
constexpr llvm::StringLiteral kPart = "qv.part";

/// The first words of a pass are the sides of its output, in pixels.
constexpr std::int64_t kSizeBytes = 8;
constexpr ValueRange kSides{1, 1 << 20};

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

/// Of all results of a function that is monotonic in each operand; nothing known where one is undefined.
/// Rounding to the nearest keeps the order, so that the rounded ends bound what is rounded.
ValueRange hullOf(std::initializer_list<float> ends) {
    if (std::ranges::any_of(ends, [](float end) { return std::isnan(end); })) return {};
    return {std::min(ends), std::max(ends)};
}

ValueRange unionOf(const ValueRange& a, const ValueRange& b) {
    return {std::min(a.low, b.low), std::max(a.high, b.high)};
}

ValueRange productOf(const ValueRange& a, const ValueRange& b) {
    return hullOf({a.low * b.low, a.low * b.high, a.high * b.low, a.high * b.high});
}

/// `b` is above 0.
ValueRange quotientOf(const ValueRange& a, const ValueRange& b) {
    return hullOf({a.low / b.low, a.low / b.high, a.high / b.low, a.high / b.high});
}

/// a·b + c, rounded once.
ValueRange sumOf(const ValueRange& a, const ValueRange& b, const ValueRange& c) {
    const auto at = [&](float x, float y) { return hullOf({std::fma(x, y, c.low), std::fma(x, y, c.high)}); };
    return unionOf(unionOf(at(a.low, b.low), at(a.low, b.high)),
                   unionOf(at(a.high, b.low), at(a.high, b.high)));
}

/// Nothing for what is no constant, or holds what is no number.
std::optional<ValueRange> rangeOfConstant(const Value* value) {
    const llvm::APFloat* number = nullptr;
    if (llvm::PatternMatch::match(value, llvm::PatternMatch::m_APFloat(number))) {
        if (&number->getSemantics() != &llvm::APFloat::IEEEsingle() || number->isNaN()) return std::nullopt;
        return ValueRange{number->convertToFloat(), number->convertToFloat()};
    }
    const auto* const lanes = llvm::dyn_cast<llvm::ConstantDataVector>(value);
    if (!lanes || !lanes->getElementType()->isFloatTy()) return std::nullopt;
    ValueRange all{lanes->getElementAsFloat(0), lanes->getElementAsFloat(0)};
    for (unsigned i = 0; i < lanes->getNumElements(); ++i) {
        const float lane = lanes->getElementAsFloat(i);
        if (std::isnan(lane)) return std::nullopt;
        all = unionOf(all, {lane, lane});
    }
    return all;
}

/// Of whole numbers, which are bounded by the bits that they can have.
ValueRange rangeOfConverted(const llvm::CastInst& cast) {
    const llvm::KnownBits bits =
        llvm::computeKnownBits(cast.getOperand(0), cast.getModule()->getDataLayout());
    if (cast.getOpcode() == Instruction::SIToFP && !bits.isNonNegative()) return {};
    if (bits.getBitWidth() > 64) return {};
    return {float(bits.getMinValue().getZExtValue()), float(bits.getMaxValue().getZExtValue())};
}

}  // namespace

Value* notePart(Value* value) {
    if (auto* const instruction = llvm::dyn_cast<Instruction>(value))
        instruction->setMetadata(kPart, llvm::MDNode::get(value->getContext(), {}));
    return value;
}

bool ValueFacts::isNumber(Value* value) {
    const auto [entry, isNew] = numbers_.try_emplace(value, false);  // what depends on itself is not known
    if (!isNew) return entry->second;
    const bool isOne = findNumber(value);
    numbers_[value] = isOne;
    return isOne;
}

bool ValueFacts::findNumber(Value* value) {
    if (const auto range = rangeOfConstant(value))
        return std::isfinite(range->low) && std::isfinite(range->high);
    if (llvm::isa<llvm::UndefValue>(value)) return true;  // lanes that a shuffle fills
    auto* const instruction = llvm::dyn_cast<Instruction>(value);
    if (!instruction) return false;
    const auto operand = [&](unsigned i) { return isNumber(instruction->getOperand(i)); };
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
            return operand(0) && operand(1) && range(instruction->getOperand(1)).low > 0;
        case Instruction::Select:
            return operand(1) && operand(2);
        case Instruction::PHI:
            return llvm::all_of(llvm::cast<llvm::PHINode>(instruction)->incoming_values(),
                                [&](Value* from) { return isNumber(from); });
        case Instruction::Call:
            return isNumberOfCall(*llvm::cast<llvm::CallInst>(instruction));
        default:
            return false;
    }
}

/// Also when it is the smaller one of a number and the larger one of a number and anything, or the other way
/// round.
bool ValueFacts::isNumberOf(const Extreme& extreme) {
    if (!isNumber(extreme.otherwise)) return false;
    if (isNumber(extreme.first)) return true;
    const auto inner = extremeOf(extreme.first);
    return inner && inner->isLarger != extreme.isLarger && isNumber(inner->otherwise);
}

bool ValueFacts::isNumberOfCall(llvm::CallInst& call) {
    if (const auto extreme = extremeOf(&call)) return isNumberOf(*extreme);
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
            return llvm::all_of(intrinsic->args(), [&](Value* argument) { return isNumber(argument); });
        case llvm::Intrinsic::sqrt:
            return isNumber(intrinsic->getArgOperand(0)) && range(intrinsic->getArgOperand(0)).low >= 0;
        default:
            return false;
    }
}

ValueRange ValueFacts::range(Value* value) {
    const auto [entry, isNew] = ranges_.try_emplace(value, ValueRange{});  // as above
    if (!isNew) return entry->second;
    const ValueRange found = findRange(value);
    ranges_[value] = found;
    return found;
}

ValueRange ValueFacts::findRange(Value* value) {
    if (const auto constant = rangeOfConstant(value)) return *constant;
    auto* const instruction = llvm::dyn_cast<Instruction>(value);
    if (!instruction || !value->getType()->getScalarType()->isFloatTy()) return {};
    if (instruction->getMetadata(kPart)) return {0, 1};
    if (Value* const same = llvm::getSplatValue(value)) return range(same);
    const auto operand = [&](unsigned i) { return range(instruction->getOperand(i)); };
    switch (instruction->getOpcode()) {
        case Instruction::UIToFP:
        case Instruction::SIToFP:
            return rangeOfConverted(*llvm::cast<llvm::CastInst>(instruction));
        case Instruction::Load: {
            const auto place = uniformAt(value);
            return place && *place < kSizeBytes ? kSides : ValueRange{};
        }
        case Instruction::ExtractElement:
            return operand(0);
        case Instruction::FNeg:
            return {-operand(0).high, -operand(0).low};
        case Instruction::FAdd:
            return sumOf({1, 1}, operand(0), operand(1));
        case Instruction::FSub:
            return sumOf({-1, -1}, operand(1), operand(0));
        case Instruction::FMul:
            return productOf(operand(0), operand(1));
        case Instruction::FDiv:
            return operand(1).low > 0 ? quotientOf(operand(0), operand(1)) : ValueRange{};
        case Instruction::Select:
            return unionOf(operand(1), operand(2));
        case Instruction::PHI: {
            const auto* phi = llvm::cast<llvm::PHINode>(instruction);
            ValueRange all = range(phi->getIncomingValue(0));
            for (Value* from : phi->incoming_values()) all = unionOf(all, range(from));
            return all;
        }
        case Instruction::Call:
            return rangeOfCall(*llvm::cast<llvm::CallInst>(instruction));
        default:
            return {};
    }
}

ValueRange ValueFacts::rangeOf(const Extreme& extreme) {
    const ValueRange first = range(extreme.first), otherwise = range(extreme.otherwise);
    const bool isSurelyCompared = isNumber(extreme.first);
    if (extreme.isLarger) {
        return {isSurelyCompared ? std::max(first.low, otherwise.low) : otherwise.low,
                std::max(first.high, otherwise.high)};
    }
    return {std::min(first.low, otherwise.low),
            isSurelyCompared ? std::min(first.high, otherwise.high) : otherwise.high};
}

ValueRange ValueFacts::rangeOfCall(llvm::CallInst& call) {
    if (const auto extreme = extremeOf(&call)) return rangeOf(*extreme);
    const auto* intrinsic = llvm::dyn_cast<llvm::IntrinsicInst>(&call);
    if (!intrinsic) return {};
    const auto argument = [&](unsigned i) { return range(intrinsic->getArgOperand(i)); };
    switch (intrinsic->getIntrinsicID()) {
        case llvm::Intrinsic::fabs: {
            const ValueRange whole = argument(0);
            return {std::max({whole.low, -whole.high, 0.0f}), std::max(-whole.low, whole.high)};
        }
        case llvm::Intrinsic::sqrt: {
            const ValueRange whole = argument(0);
            return {std::sqrt(std::max(whole.low, 0.0f)), std::sqrt(std::max(whole.high, 0.0f))};
        }
        case llvm::Intrinsic::floor:
            return {std::floor(argument(0).low), std::floor(argument(0).high)};
        case llvm::Intrinsic::fma:
            return sumOf(argument(0), argument(1), argument(2));
        default:
            return {};
    }
}

}  // namespace qv::native
