#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

#include "Platform/ImageGraph/Native/Compiler/Emitter.h"
#include "Platform/ImageGraph/Native/Compiler/LaneMath.h"

namespace qv::native {

namespace {

/// A store at places that differ between lanes looks at each element.
constexpr std::size_t kMostStoredPlaces = 256;

bool areConstant(const Values& values) {
    return std::ranges::all_of(values, [](const Value* value) { return llvm::isa<llvm::Constant>(value); });
}

[[noreturn]] void refuseArray() {
    throw KernelError("an indexed array of booleans or of different components");
}

}  // namespace

llvm::AllocaInst* Emitter::allocate(llvm::Type* type, llvm::Constant* first) {
    llvm::AllocaInst* place = frame_.entry.CreateAlloca(type);
    frame_.start.CreateStore(first, place);
    return place;
}

Value* Emitter::argument(llvm::Type* type, std::size_t offset) {
    Builder& ir = frame_.entry;
    return ir.CreateLoad(type, ir.CreateConstGEP1_64(ir.getInt8Ty(), frame_.arguments, offset));
}

void Emitter::bindInputs() {
    Builder& ir = frame_.entry;
    llvm::Type* word = ir.getInt32Ty();
    Value* words = nullptr;
    for (const Operation& global : program_.module.globals) {
        if (global.op != spv::OpVariable || global[0] != spv::StorageClassInput) continue;
        const auto found = program_.module.decorations.find(global.result);
        const Decorations none,
            &decorations = found == program_.module.decorations.end() ? none : found->second;
        const Id type = program_.variables.at(global.result).type;
        const std::uint32_t count = program_.module.type(type).components;
        Values& values = assigned_[global.result];
        if (decorations.builtIn == spv::BuiltInFragCoord) {
            const auto middle = [](Builder& at, Value* whole) {
                return at.CreateFAdd(at.CreateSIToFP(whole, at.getFloatTy()),
                                     llvm::ConstantFP::get(at.getFloatTy(), 0.5));
            };
            Value* firstX = middle(ir_, frame_.firstX);
            values = {steps(firstX), middle(ir_, frame_.row), llvm::ConstantFP::get(ir_.getFloatTy(), 0),
                      llvm::ConstantFP::get(ir_.getFloatTy(), 1)};
            centres_ = {{values[0], steps(frame_.firstX)}, {values[1], frame_.row}};
            continue;
        }
        const std::uint32_t first = 4 * decorations.location.value_or(kMaximumPushedWords);
        if (decorations.builtIn || first + count > std::uint32_t(kMaximumPushedWords)) {
            throw KernelError("an input that is not known");
        }
        if (!words) words = argument(ir.getPtrTy(), offsetof(NativeKernelArguments, words));
        std::vector<Id> scalars;
        program_.module.appendScalars(type, scalars);
        for (std::uint32_t i = 0; i < count; ++i) {
            llvm::Type* lane = scalarType(ir, program_.module.type(scalars[i]));
            if (lane->isIntegerTy(1)) throw KernelError("an input that is not known");
            values.push_back(ir.CreateLoad(lane, ir.CreateConstGEP1_32(word, words, first + i)));
        }
    }
}

const TextureOperands& Emitter::textureOf(Id image) {
    const auto [entry, isNew] = textures_.try_emplace(program_.images.at(image));
    if (!isNew) return entry->second;
    const auto decorations = program_.module.decorations.find(entry->first);
    const std::size_t binding = decorations == program_.module.decorations.end()
                                    ? frame_.inputs.size()
                                    : decorations->second.binding.value_or(frame_.inputs.size());
    if (binding >= frame_.inputs.size()) throw KernelError("an input of which no format is given");
    Builder& ir = frame_.entry;
    Value* images = argument(ir.getPtrTy(), offsetof(NativeKernelArguments, inputs));
    const auto member = [&](llvm::Type* type, std::size_t offset) {
        return ir.CreateLoad(
            type, ir.CreateConstGEP1_64(ir.getInt8Ty(), images, binding * sizeof(NativeImage) + offset));
    };
    entry->second = {member(ir.getPtrTy(), offsetof(NativeImage, pixels)),
                     member(ir.getInt64Ty(), offsetof(NativeImage, rowBytes)),
                     member(ir.getInt32Ty(), offsetof(NativeImage, width)),
                     member(ir.getInt32Ty(), offsetof(NativeImage, height)), frame_.inputs[binding]};
    return entry->second;
}

Emitter::Storage& Emitter::storageOf(Id id) {
    const auto [entry, isNew] = storages_.try_emplace(id);
    Storage& storage = entry->second;
    if (!isNew) return storage;
    const Variable& variable = program_.variables.at(id);
    std::vector<Id> scalars;
    program_.module.appendScalars(variable.type, scalars);
    const auto typeAt = [&](std::size_t i) -> llvm::Type* {
        llvm::Type* lane = scalarType(ir_, program_.module.type(scalars[i]));
        const bool varies = uniformity_.of(id, std::uint32_t(scalars.size()))[i] == Spread::varying;
        return varies ? llvm::FixedVectorType::get(lane, kKernelLanes) : lane;
    };
    if (variable.isDynamic) {
        storage.element = typeAt(0);
        for (std::size_t i = 1; i < scalars.size(); ++i) {
            if (typeAt(i) != storage.element) refuseArray();
        }
        if (storage.element->getScalarType()->isIntegerTy(1)) refuseArray();
        llvm::Type* array = llvm::ArrayType::get(storage.element, scalars.size());
        storage.array = allocate(array, llvm::Constant::getNullValue(array));
        return storage;
    }
    for (std::size_t i = 0; i < scalars.size(); ++i) {
        storage.components.push_back(allocate(typeAt(i), llvm::Constant::getNullValue(typeAt(i))));
    }
    return storage;
}

/// The component that the indices lead to, within the variable.
Value* Emitter::placeOf(const Pointer& pointer) {
    Value* place = ir_.getInt32(pointer.offset);
    for (const Pointer::Index& index : pointer.indices) {
        Value* inside = of(index.value).at(0);
        inside = ir_.CreateBinaryIntrinsic(llvm::Intrinsic::umin, inside, whole(inside, index.count - 1));
        Value* offset = ir_.CreateMul(inside, whole(inside, index.stride));
        unify(ir_, place, offset);
        place = ir_.CreateAdd(place, offset);
    }
    return place;
}

Value* Emitter::inMask(Value* value, Value* old) {
    return choose(ir_, mask_, value, old);
}

Values Emitter::loadPlace(const Pointer& pointer, const Storage& storage, std::size_t count) {
    Value* first = placeOf(pointer);
    Values result;
    for (std::size_t i = 0; i < count; ++i) {
        Value* place = ir_.CreateAdd(first, whole(first, i));
        if (!isVarying(place)) {
            Value* address = ir_.CreateGEP(storage.element, storage.array, place);
            result.push_back(ir_.CreateLoad(storage.element, address));
            continue;
        }
        llvm::Type* lane = storage.element->getScalarType();
        if (storage.element->isVectorTy()) {
            place = ir_.CreateAdd(ir_.CreateMul(place, whole(place, kKernelLanes)), steps(ir_.getInt32(0)));
        }
        result.push_back(ir_.CreateMaskedGather(llvm::FixedVectorType::get(lane, kKernelLanes),
                                                ir_.CreateGEP(lane, storage.array, place), llvm::Align(4)));
    }
    return result;
}

void Emitter::storePlace(const Pointer& pointer, const Storage& storage, const Values& values,
                         bool isMasked) {
    const std::size_t all = program_.module.type(program_.variables.at(pointer.variable).type).components;
    Value* first = placeOf(pointer);
    const bool differs = isVarying(first);
    if (differs && all > kMostStoredPlaces) throw KernelError("a large array is written at varying places");
    for (std::size_t i = 0; i < values.size(); ++i) {
        Value* place = ir_.CreateAdd(first, whole(first, i));
        for (std::size_t n = 0; n < (differs ? all : 1); ++n) {
            Value* address = ir_.CreateGEP(storage.element, storage.array, differs ? ir_.getInt32(n) : place);
            Value* value = storage.element->isVectorTy() ? spread(ir_, values[i]) : values[i];
            if (value->getType() != storage.element)
                throw KernelError("a value that varies where it must not");
            if (differs || isMasked) {
                Value* old = ir_.CreateLoad(storage.element, address);
                if (isMasked) value = inMask(value, old);
                if (differs) value = choose(ir_, ir_.CreateICmpEQ(place, whole(place, n)), value, old);
            }
            ir_.CreateStore(value, address);
        }
    }
}

void Emitter::store(const Node& node) {
    const Pointer pointer = program_.pointer(node.operation[0]);
    const Variable& variable = program_.variables.at(pointer.variable);
    const Values values = of(node.operation[1]);
    if (variable.isAssignedOnce && (!variable.isDynamic || areConstant(values))) {
        assigned_[pointer.variable] = values;
        return;
    }
    Storage& storage = storageOf(pointer.variable);
    const bool isMasked = mask_ && !node.isUnmasked && !variable.isAssignedOnce;
    if (storage.array) return storePlace(pointer, storage, values, isMasked);
    for (std::size_t i = 0; i < values.size(); ++i) {
        llvm::AllocaInst* place = storage.components.at(pointer.offset + i);
        llvm::Type* type = place->getAllocatedType();
        Value* value = values[i];
        if (type->isVectorTy()) {
            value = spread(ir_, value);
        } else if (isVarying(value)) {
            value = firstOf(value);
        }
        if (!value) throw KernelError("a value that varies where it must not");
        if (isMasked && type->isVectorTy()) value = inMask(value, ir_.CreateLoad(type, place));
        ir_.CreateStore(value, place);
    }
}

Values Emitter::load(const Operation& operation) {
    const Pointer pointer = program_.pointer(operation[0]);
    const std::size_t count = program_.components(operation.result);
    if (const auto assigned = assigned_.find(pointer.variable); assigned != assigned_.end()) {
        if (pointer.indices.empty()) {
            const auto first = assigned->second.begin() + pointer.offset;
            return {first, first + std::ptrdiff_t(count)};
        }
        Storage& table = storages_[pointer.variable];
        if (!table.array) {
            std::vector<llvm::Constant*> constants;
            table.element = assigned->second.front()->getType();
            for (Value* value : assigned->second) {
                constants.push_back(llvm::dyn_cast<llvm::Constant>(value));
                if (!constants.back()) throw KernelError("an input is indexed");
                if (value->getType() != table.element || table.element->isIntegerTy(1)) refuseArray();
            }
            auto* type = llvm::ArrayType::get(table.element, constants.size());
            table.array = new llvm::GlobalVariable(*ir_.GetInsertBlock()->getModule(), type, true,
                                                   llvm::GlobalValue::PrivateLinkage,
                                                   llvm::ConstantArray::get(type, constants));
        }
        return loadPlace(pointer, table, count);
    }
    const Storage& storage = storageOf(pointer.variable);
    if (storage.array) return loadPlace(pointer, storage, count);
    Values result;
    for (std::size_t i = 0; i < count; ++i) {
        llvm::AllocaInst* place = storage.components.at(pointer.offset + i);
        Value* value = ir_.CreateLoad(place->getAllocatedType(), place);
        const bool isStepping =
            uniformity_.of(pointer.variable, std::size_t(pointer.offset + i)) == Spread::affine;
        result.push_back(isStepping ? steps(value) : value);
    }
    return result;
}

}  // namespace qv::native
