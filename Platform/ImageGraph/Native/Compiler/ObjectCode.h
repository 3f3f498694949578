#pragma once

#include <llvm/IR/Module.h>

#include <cstddef>
#include <string>
#include <vector>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv::native {

/// Contracts a·b + c to one rounding where it can, optimises for the target and makes an object. The order is
/// what makes the bytes the same everywhere: contraction is decided before anything knows the target, and
/// nothing is reassociated. Empty with one line in `error` on failure.
std::vector<std::byte> objectOf(llvm::Module& module, NativeTarget target, std::string* error);

}  // namespace qv::native
