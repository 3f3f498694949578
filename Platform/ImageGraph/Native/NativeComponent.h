#pragma once

#include <string>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv {

/// The component's file name.
inline constexpr char kNativeComponentName[] = "libQVFilterNative.so.0";

/// The component's file, beside the library; empty when it is not installed. Loads nothing.
std::string nativeComponentPath();

/// The compiler of the component, which is loaded by the first call. Nil with one line in `error` when it is
/// missing or made for another library. Thread-safe.
const NativeCompiler* nativeCompiler(std::string* error = nullptr);

}  // namespace qv
