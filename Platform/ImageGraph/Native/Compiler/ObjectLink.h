#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace qv::native {

/// Makes of an object what LoadedKernel takes: all that the kernel needs in one piece, which runs wherever it
/// lies. So whoever loads it needs no linker. Empty with one line in `error` on failure.
std::vector<std::byte> linkedCode(std::span<const std::byte> object, std::string* error);

}  // namespace qv::native
