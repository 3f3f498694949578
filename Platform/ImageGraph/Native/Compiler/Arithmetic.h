#pragma once

#include <vector>

#include "Platform/ImageGraph/Native/Compiler/Lanes.h"
#include "Platform/ImageGraph/Native/Compiler/Program.h"

namespace qv::native {

/// The components of a value.
using Values = std::vector<Value*>;

/// Whether a component of the result may depend on other components of operands that have as many.
bool mixesComponents(const Operation& operation);

/// What an operation on numbers gives: `operands` are those that are values, in order. Throws KernelError for
/// an operation that is not supported.
Values arithmetic(Builder& ir, const Program& program, const Operation& operation,
                  const std::vector<Values>& operands);

/// The type of one lane of a scalar type.
llvm::Type* scalarType(Builder& ir, const Type& scalar);
/// `condition` ? a : b, lane by lane.
Value* choose(Builder& ir, Value* condition, Value* a, Value* b);

}  // namespace qv::native
