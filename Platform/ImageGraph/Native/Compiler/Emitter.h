#pragma once

#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Platform/ImageGraph/Native/Compiler/Arithmetic.h"
#include "Platform/ImageGraph/Native/Compiler/Program.h"
#include "Platform/ImageGraph/Native/Compiler/Uniformity.h"

namespace qv::native {

/// What a group of pixels draws with.
struct KernelFrame {
    Builder& entry;       ///< once for a call: what the arguments point to, memory for variables
    Builder& start;       ///< before each group's code: the first values of variables
    Builder& group;       ///< the code itself
    Value *firstX, *row;  ///< i32, of the group
    Value* arguments;     ///< pointer to NativeKernelArguments
    const std::vector<TextureFormat>& inputs;
};

/// Writes a program as code for one group of pixels.
class Emitter {
  public:
    Emitter(const Program& program, const Uniformity& uniformity, const KernelFrame& frame);

    /// The colour that the program gives.
    Color emit();

  private:
    /// Where a variable's components lie.
    struct Storage {
        std::vector<llvm::AllocaInst*> components;  ///< one each, or
        Value* array = nullptr;                     ///< all of one that is indexed by values
        llvm::Type* element = nullptr;              ///< of the array
    };
    struct Scope {
        llvm::BasicBlock* end = nullptr;
        llvm::AllocaInst* exited = nullptr;  ///< lanes that have left by masks; nil when none can
    };

    // Emitter.cpp: control flow.
    void findParting(const Sequence& sequence);
    void emit(const Sequence& sequence);
    void emitSelection(const Node& node);
    void emitArm(const Sequence& arm, Value* mask);
    void emitScope(const Node& node);
    void emitLoop(const Node& node);
    void emitExit(const Node& node);
    llvm::BasicBlock* newBlock();
    /// Goes on in `block`, reached from here too.
    void enter(llvm::BasicBlock* block);
    /// `lanes` without those that have left for one of the scopes.
    Value* without(Value* lanes, const std::vector<int>& scopes);
    Value* isAny(Value* lanes);

    // Emitter.cpp: operations.
    void emitOperation(const Node& node);
    Values texel(const Operation& operation);
    /// Keeps track of the places of neighbouring pixels.
    void noteSteps(const Operation& operation, const std::vector<Values>& operands, Values& result);
    void emitConstants();
    Values constantOf(const Operation& global);
    Values of(Id id) const;

    // Variables.cpp
    void bindInputs();
    void store(const Node& node);
    Values load(const Operation& operation);
    Values loadPlace(const Pointer& pointer, const Storage& storage, std::size_t count);
    void storePlace(const Pointer& pointer, const Storage& storage, const Values& values, bool isMasked);
    Storage& storageOf(Id variable);
    Value* placeOf(const Pointer& pointer);
    Value* inMask(Value* value, Value* old);
    llvm::AllocaInst* allocate(llvm::Type* type, llvm::Constant* first);
    Value* argument(llvm::Type* type, std::size_t offset);
    const TextureOperands& textureOf(Id image);

    /// A value that is `first` in the first lane and one more in each that follows.
    Value* steps(Value* first);
    /// The first of such a value; nil for others.
    Value* firstOf(Value* value) const;

    const Program& program_;
    const Uniformity& uniformity_;
    const KernelFrame& frame_;
    Builder& ir_;
    std::unordered_map<Id, Values> values_;
    std::unordered_map<Id, Values> assigned_;  ///< what variables hold that are assigned once, and inputs
    std::unordered_map<Id, Storage> storages_;
    std::unordered_map<Id, TextureOperands> textures_;
    std::vector<Scope> scopes_;
    Value* mask_ = nullptr;  ///< lanes that take part; nil for all
    std::unordered_map<Value*, Value*> firsts_;
    std::unordered_map<Value*, Value*> centres_;  ///< the whole number that a pixel's middle, a float, is in
    /// Of a stepping x that has been clamped to a texture: the first one before, and the texture's width.
    std::unordered_map<Value*, std::pair<Value*, Value*>> clamped_;
};

}  // namespace qv::native
