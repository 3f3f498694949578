#pragma once

#include <llvm/IR/Function.h>

namespace qv::native {

/// Takes out of a kernel what LLVM cannot know to be needless.
///
/// - Checks whether values are numbers, of those that are: what comes of whole numbers, constants and
/// uniforms,
///   which filters send as numbers, by sums, products and divisions by what is above 0, as the output's size
///   is. Of such values none overflows that is a colour or a place.
/// - Clamps of places that have been clamped to the same texture.
void dropRedundancies(llvm::Function& function);

}  // namespace qv::native
