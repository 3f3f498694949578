#pragma once

#include <llvm/IR/Function.h>

namespace qv::native {

// What is taken out of a kernel that LLVM cannot know to be needless.

/// Checks whether values are numbers, of those that are, and clamps of places that have been clamped to the
/// same texture.
void dropNeedlessChecks(llvm::Function& function);

/// Bounds, such as those of a clamp, that what is bounded keeps in any case. Products and sums must have been
/// contracted: how these are rounded decides.
void dropNeedlessBounds(llvm::Function& function);

}  // namespace qv::native
