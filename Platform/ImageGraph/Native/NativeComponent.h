#pragma once

#include <string>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv {

/// The component's file name.
inline constexpr char kNativeComponentName[] = "libQVFilterNative.so.0";

/// The component's file, beside the library; empty when it is not installed. Loads nothing.
std::string nativeComponentPath();

/// The compiler of the component, which is loaded when there is something to compile: kernels that were
/// compiled beforehand need neither it nor LLVM. Where it is missing, or made for another library, compiling
/// fails.
const NativeCompiler& nativeCompiler();

}  // namespace qv
