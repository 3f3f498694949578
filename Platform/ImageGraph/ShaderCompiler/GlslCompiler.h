#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qv {

/// SPIR-V of a Vulkan GLSL fragment stage for Vulkan 1.1, compiled in this process. Empty with the compiler's
/// first message in `error` when the text is refused; nothing is printed. Thread-safe.
std::vector<std::uint32_t> compileFragmentGlsl(const std::string& text, std::string* error = nullptr);

/// Name and version of the compiler: what it made is worth keeping for as long as this stays the same.
std::string glslCompilerVersion();

}  // namespace qv
