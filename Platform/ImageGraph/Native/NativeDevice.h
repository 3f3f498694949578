#pragma once

#include <memory>

#include "Platform/ImageGraph/MTIContext.h"

namespace qv {

/// The processor as a device, and why a context cannot be made on it. Loads nothing. `threads` as in
/// MTIContextOptions.
GraphicsDevice nativeDevice(int threads = 0);

/// Throws RenderError when the machine or the installation has not what it takes.
std::shared_ptr<MTIContext> makeNativeContext(const MTIContextOptions& options);

}  // namespace qv
