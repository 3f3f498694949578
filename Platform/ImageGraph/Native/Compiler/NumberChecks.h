#pragma once

#include <llvm/IR/Function.h>

namespace qv::native {

/// Takes out of a kernel the checks whether values are numbers, of those that are: what comes of whole
/// numbers, constants and uniforms, which filters send as numbers, by sums, products and divisions by what is
/// above 0. Of such values none overflows that is a colour or a place.
void dropNumberChecks(llvm::Function& function);

}  // namespace qv::native
