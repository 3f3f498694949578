#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv::native {

/// Copies an object into memory of its own, which is given back with the result, and makes it executable. Nil
/// with one line in `error` on failure.
std::shared_ptr<const LinkedNativeKernel> linkObject(std::span<const std::byte> object, std::string* error);

}  // namespace qv::native
