#pragma once

#include <llvm/IR/Function.h>

namespace qv::native {

/// Makes a·b + c, a·b − c and c − a·b one operation, rounded once, where the product has no other use.
void contractProducts(llvm::Function& function);

}  // namespace qv::native
