#include "Platform/ImageGraph/Native/Compiler/Emitter.h"

#include <fmt/format.h>
#include <glslang/SPIRV/GLSL.std.450.h>
#include <llvm/IR/PatternMatch.h>

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "Platform/ImageGraph/Native/Compiler/Components.h"
#include "Platform/ImageGraph/Native/Compiler/LaneMath.h"

namespace qv::native {

namespace {

/// Operations, more or less, from which on it pays to see whether any lane needs them.
constexpr int kWorthBranch = 24;

int costOf(const Sequence& sequence) {
    int cost = 0;
    for (const Node& node : sequence) {
        if (node.kind == Node::Kind::loop) return kWorthBranch;
        switch (node.operation.op) {
            case spv::OpImageSampleExplicitLod:
            case spv::OpImageSampleImplicitLod:
            case spv::OpImageFetch:
                cost += kWorthBranch;
                break;
            case spv::OpExtInst:
                cost += 6;
                break;
            default:
                ++cost;
        }
        cost += costOf(node.body) + costOf(node.otherwise);
    }
    return cost;
}

}  // namespace

Emitter::Emitter(const Program& program, const Uniformity& uniformity, const KernelFrame& frame)
    : program_(program),
      uniformity_(uniformity),
      frame_(frame),
      ir_(frame.group),
      scopes_(std::size_t(program.scopes)) {}

Color Emitter::emit() {
    if (program_.output == 0 ||
        program_.module.type(program_.variables.at(program_.output).type).components != 4) {
        throw KernelError("a fragment stage that gives no colour");
    }
    emitConstants();
    bindInputs();
    findParting(program_.body);
    emit(program_.body);
    const Storage& output = storageOf(program_.output);
    Color color;
    for (std::size_t i = 0; i < color.size(); ++i) {
        llvm::AllocaInst* place = output.components.at(i);
        color[i] = ir_.CreateLoad(place->getAllocatedType(), place);
        if (uniformity_.of(program_.output, i) == Spread::affine) color[i] = steps(color[i]);
    }
    return color;
}

// --- Control flow. ---

void Emitter::findParting(const Sequence& sequence) {
    for (const Node& node : sequence) {
        if (node.kind == Node::Kind::exit && node.varying) {
            llvm::AllocaInst*& exited = scopes_[std::size_t(node.scope)].exited;
            auto* type = llvm::FixedVectorType::get(ir_.getInt1Ty(), kKernelLanes);
            if (!exited) exited = allocate(type, llvm::Constant::getNullValue(type));
        }
        findParting(node.body);
        findParting(node.otherwise);
    }
}

llvm::BasicBlock* Emitter::newBlock() {
    return llvm::BasicBlock::Create(ir_.getContext(), "", ir_.GetInsertBlock()->getParent());
}

void Emitter::enter(llvm::BasicBlock* block) {
    ir_.CreateBr(block);
    ir_.SetInsertPoint(block);
}

Value* Emitter::without(Value* lanes, const std::vector<int>& scopes) {
    for (int scope : scopes) {
        llvm::AllocaInst* exited = scopes_[std::size_t(scope)].exited;
        if (!exited) continue;
        Value* staying = ir_.CreateNot(ir_.CreateLoad(exited->getAllocatedType(), exited));
        lanes = lanes ? ir_.CreateAnd(lanes, staying) : staying;
    }
    return lanes;
}

Value* Emitter::isAny(Value* lanes) {
    return ir_.CreateICmpNE(ir_.CreateBitCast(lanes, ir_.getIntNTy(kKernelLanes)),
                            ir_.getIntN(kKernelLanes, 0));
}

void Emitter::emit(const Sequence& sequence) {
    for (const Node& node : sequence) {
        switch (node.kind) {
            case Node::Kind::operation:
                emitOperation(node);
                break;
            case Node::Kind::selection:
                emitSelection(node);
                break;
            case Node::Kind::scope:
                emitScope(node);
                break;
            case Node::Kind::loop:
                emitLoop(node);
                break;
            case Node::Kind::exit:
                emitExit(node);
                break;
        }
    }
}

void Emitter::emitSelection(const Node& node) {
    Value* const lanes = mask_;
    Value* condition = of(node.condition).at(0);
    if (node.varying) {
        condition = spread(ir_, condition);
        // A lane that takes no part may hold anything: `and` would pass on what is poisoned there.
        const auto within = [&](Value* chosen) {
            return lanes ? ir_.CreateLogicalAnd(lanes, chosen) : chosen;
        };
        emitArm(node.body, within(condition));
        if (!node.otherwise.empty()) emitArm(node.otherwise, within(ir_.CreateNot(condition)));
    } else {
        llvm::BasicBlock *body = newBlock(), *otherwise = newBlock(), *end = newBlock();
        ir_.CreateCondBr(condition, body, otherwise);
        ir_.SetInsertPoint(body);
        emit(node.body);
        ir_.CreateBr(end);
        mask_ = lanes;
        ir_.SetInsertPoint(otherwise);
        emit(node.otherwise);
        enter(end);
    }
    mask_ = without(lanes, node.left);
}

void Emitter::emitArm(const Sequence& arm, Value* mask) {
    mask_ = mask;
    if (costOf(arm) < kWorthBranch) return emit(arm);
    llvm::BasicBlock *body = newBlock(), *end = newBlock();
    ir_.CreateCondBr(isAny(mask), body, end);
    ir_.SetInsertPoint(body);
    emit(arm);
    enter(end);
}

void Emitter::emitScope(const Node& node) {
    Value* const lanes = mask_;
    Scope& scope = scopes_[std::size_t(node.scope)];
    scope.end = newBlock();
    if (scope.exited) {
        ir_.CreateStore(llvm::Constant::getNullValue(scope.exited->getAllocatedType()), scope.exited);
    }
    emit(node.body);
    enter(scope.end);
    mask_ = without(lanes, node.left);
}

void Emitter::emitLoop(const Node& node) {
    Value* const lanes = mask_;
    Scope& scope = scopes_[std::size_t(node.scope)];
    scope.end = newBlock();
    if (scope.exited) {
        ir_.CreateStore(llvm::Constant::getNullValue(scope.exited->getAllocatedType()), scope.exited);
    }
    llvm::BasicBlock* turn = newBlock();
    enter(turn);
    if (node.varying) {
        mask_ = without(without(lanes, {node.scope}), node.left);
        llvm::BasicBlock* body = newBlock();
        ir_.CreateCondBr(isAny(mask_), body, scope.end);
        ir_.SetInsertPoint(body);
    }
    emit(node.body);
    ir_.CreateBr(turn);
    ir_.SetInsertPoint(scope.end);
    mask_ = without(lanes, node.left);
}

void Emitter::emitExit(const Node& node) {
    const Scope& scope = scopes_[std::size_t(node.scope)];
    if (!node.varying) {
        ir_.CreateBr(scope.end);
        ir_.SetInsertPoint(newBlock());
        return;
    }
    llvm::Type* type = scope.exited->getAllocatedType();
    Value* leaving = mask_ ? mask_ : llvm::Constant::getAllOnesValue(type);
    ir_.CreateStore(ir_.CreateOr(ir_.CreateLoad(type, scope.exited), leaving), scope.exited);
}

// --- Operations. ---

void Emitter::emitConstants() {
    for (const Operation& global : program_.module.globals) {
        if (global.op != spv::OpVariable) values_[global.result] = constantOf(global);
    }
}

Values Emitter::constantOf(const Operation& global) {
    Builder& ir = frame_.entry;
    const Type& type = program_.module.type(global.type);
    const auto component = [&](const Type& scalar, std::uint32_t word) -> Value* {
        llvm::Type* lane = scalarType(ir, scalar);
        if (lane->isFloatTy()) return ir.CreateBitCast(ir.getInt32(word), lane);
        return llvm::ConstantInt::get(lane, word);
    };
    const auto operand = [&](Id id) { return of(id); };
    switch (global.op) {
        case spv::OpConstantTrue:
        case spv::OpConstantFalse:
            return {ir.getInt1(global.op == spv::OpConstantTrue)};
        case spv::OpConstant:
            return {component(type, global[0])};
        case spv::OpConstantNull:
        case spv::OpUndef: {
            Values values;
            std::vector<Id> scalars;
            program_.module.appendScalars(global.type, scalars);
            for (Id scalar : scalars) values.push_back(component(program_.module.type(scalar), 0));
            return values;
        }
        case spv::OpSpecConstant:
        case spv::OpSpecConstantTrue:
        case spv::OpSpecConstantFalse: {
            const auto decorations = program_.module.decorations.find(global.result);
            const std::optional<std::uint32_t> id = decorations == program_.module.decorations.end()
                                                        ? std::nullopt
                                                        : decorations->second.constantId;
            if (!id || *id >= kResampleConstantBase + 32) throw KernelError("a constant without a number");
            llvm::Type* word = ir.getInt32Ty();
            Value* value = nullptr;
            if (*id < kResampleConstantBase) {
                Value* selectors = argument(ir.getPtrTy(), offsetof(NativeKernelArguments, selectors));
                value = ir.CreateLoad(word, ir.CreateConstGEP1_32(word, selectors, *id));
            } else {
                Value* resampled = argument(word, offsetof(NativeKernelArguments, resampled));
                value = ir.CreateAnd(ir.CreateLShr(resampled, *id - kResampleConstantBase), 1);
            }
            if (type.kind == Type::Kind::boolean) return {ir.CreateICmpNE(value, ir.getInt32(0))};
            return {ir.CreateBitCast(value, scalarType(ir, type))};
        }
        default:
            break;
    }
    Operation operation = global;
    if (global.op == spv::OpSpecConstantOp) {
        operation.op = spv::Op(global[0]);
        operation.operands.erase(operation.operands.begin());
    }
    if (auto moved = movedComponents<Value*>(program_, operation, operand, nullptr)) return *std::move(moved);
    std::vector<Values> operands;
    for (const Operation::Operand& one : operation.operands) operands.push_back(of(one.word));
    return arithmetic(ir, program_, operation, operands);
}

Values Emitter::of(Id id) const {
    const auto found = values_.find(id);
    if (found == values_.end()) throw KernelError("a value that is not known");
    return found->second;
}

Value* Emitter::steps(Value* first) {
    const bool isFloat = first->getType()->isFloatTy();
    std::vector<llvm::Constant*> lanes;
    for (int i = 0; i < kKernelLanes; ++i) {
        lanes.push_back(isFloat ? llvm::ConstantFP::get(first->getType(), i)
                                : llvm::ConstantInt::get(first->getType(), std::uint64_t(i)));
    }
    llvm::Constant* steps = llvm::ConstantVector::get(lanes);
    Value* all = spread(ir_, first);
    Value* value = isFloat ? ir_.CreateFAdd(all, steps) : ir_.CreateAdd(all, steps);
    firsts_[value] = first;
    return value;
}

Value* Emitter::firstOf(Value* value) const {
    const auto found = firsts_.find(value);
    return found == firsts_.end() ? nullptr : found->second;
}

void Emitter::emitOperation(const Node& node) {
    const Operation& operation = node.operation;
    Values& result = values_[operation.result];
    const auto operand = [&](Id id) { return of(id); };
    switch (operation.op) {
        case spv::OpStore:
            return store(node);
        case spv::OpLoad:
            result = load(operation);
            return;
        case spv::OpImageSampleExplicitLod:
        case spv::OpImageSampleImplicitLod:
        case spv::OpImageFetch:
            result = texel(operation);
            return;
        case spv::OpImageQuerySizeLod: {
            const TextureOperands& texture = textureOf(operation[0]);
            result = {texture.width, texture.height};
            return;
        }
        case spv::OpUndef:
            result = constantOf(operation);
            return;
        default:
            break;
    }
    if (auto moved = movedComponents<Value*>(program_, operation, operand, nullptr)) {
        result = *std::move(moved);
        // A shuffle may leave components undefined.
        for (Value*& value : result) {
            if (!value)
                value = llvm::Constant::getNullValue(result.front() ? result.front()->getType()
                                                                    : ir_.getInt32Ty());
        }
        return;
    }
    std::vector<Values> operands;
    const std::size_t first = operation.op == spv::OpExtInst ? 2 : 0;
    for (std::size_t i = first; i < operation.size(); ++i) operands.push_back(of(operation[i]));
    result = arithmetic(ir_, program_, operation, operands);
    noteSteps(operation, operands, result);
}

void Emitter::noteSteps(const Operation& operation, const std::vector<Values>& operands, Values& result) {
    using namespace llvm::PatternMatch;
    const bool isSum = operation.op == spv::OpIAdd, isDifference = operation.op == spv::OpISub;
    for (std::size_t i = 0; i < result.size(); ++i) {
        const auto at = [&](std::size_t n) {
            return operands[n].size() == 1 ? operands[n][0] : operands[n][i];
        };
        if (isSum || isDifference) {
            Value *a = at(0), *b = at(1);
            if (isSum && firstOf(b)) std::swap(a, b);
            if (!firstOf(a) || isVarying(b)) continue;
            result[i] = steps(isSum ? ir_.CreateAdd(firstOf(a), b) : ir_.CreateSub(firstOf(a), b));
        } else if (operation.op == spv::OpConvertFToS) {
            if (const auto centre = centres_.find(at(0)); centre != centres_.end())
                result[i] = centre->second;
        } else if (operation.op == spv::OpExtInst && operation[1] == GLSLstd450SClamp) {
            Value* width = nullptr;
            if (firstOf(at(0)) && match(at(1), m_ZeroInt()) && match(at(2), m_Sub(m_Value(width), m_One()))) {
                clamped_[result[i]] = {firstOf(at(0)), width};
            }
        }
    }
}

Values Emitter::texel(const Operation& operation) {
    const TextureOperands& texture = textureOf(operation[0]);
    if (operation.size() > 2 && (operation[2] & ~unsigned(spv::ImageOperandsLodMask)) != 0) {
        throw KernelError("a texture is read in a way that is not supported");
    }
    const Values place = of(operation[1]);
    Color color;
    if (operation.op != spv::OpImageFetch) {
        color = sampleTexture(ir_, texture, place.at(0), place.at(1));
    } else {
        Value *x = place.at(0), *y = place.at(1), *first = firstOf(x);
        if (const auto clamped = clamped_.find(x); clamped != clamped_.end()) {
            if (clamped->second.second == texture.width) first = clamped->second.first;
        }
        // The pixel itself is fetched from textures of the target's size only.
        const bool isHere = first == frame_.firstX && y == frame_.row && first == firstOf(x);
        color = fetchTexel(ir_, texture, x, y, first, isHere);
    }
    return {color.begin(), color.end()};
}

}  // namespace qv::native
