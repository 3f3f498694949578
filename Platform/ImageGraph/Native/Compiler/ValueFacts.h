#pragma once

#include <llvm/ADT/DenseMap.h>
#include <llvm/IR/Instructions.h>

#include <limits>

#include "Platform/ImageGraph/Native/Compiler/TargetCalls.h"

namespace qv::native {

/// From `low` to `high`, both among them.
struct ValueRange {
    float low = -std::numeric_limits<float>::infinity(), high = std::numeric_limits<float>::infinity();
};

/// Notes that a value lies in 0..1, where its code does not show it; returns it. The note may get lost.
llvm::Value* notePart(llvm::Value* value);

/// What is known of the floats of a kernel's code, as long as the code stays as it is.
class ValueFacts {
  public:
    /// Whether it is surely a finite number: what comes of whole numbers, constants and uniforms, which
    /// filters send as numbers, by sums, products and divisions by what is above 0, as the sides of the
    /// output are. Of such values none overflows that is a colour or a place.
    bool isNumber(llvm::Value* value);
    /// Where it lies if it is a number.
    ValueRange range(llvm::Value* value);

  private:
    bool findNumber(llvm::Value* value);
    bool isNumberOfCall(llvm::CallInst& call);
    bool isNumberOf(const Extreme& extreme);
    ValueRange findRange(llvm::Value* value);
    ValueRange rangeOfCall(llvm::CallInst& call);
    ValueRange rangeOf(const Extreme& extreme);

    llvm::DenseMap<llvm::Value*, bool> numbers_;
    llvm::DenseMap<llvm::Value*, ValueRange> ranges_;
};

}  // namespace qv::native
