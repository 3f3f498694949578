#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/ImageGraph/MTIContext.h"

namespace qv::host {

class Command;

/// What the machine can render with. Fails as device when there is nothing.
std::vector<GraphicsDevice> graphicsDevices();

/// Which device renders, and how.
struct DeviceOptions {
    std::string device;  ///< "native", "vulkan" or a device's index; the most capable without
    bool validate = false, noFusion = false;
    std::optional<int> textureMemory;  ///< MiB of idle textures that are kept
    void add(const Command& command);

    /// A context, which filters that render by themselves share. --no-fusion goes before `fusion`; of the
    /// processor at most `threads` render, 0 for all. Fails as usage or device.
    std::shared_ptr<MTIContext> makeContext(MTIPixelFormat workingFormat = MTIPixelFormat::rgba8Unorm,
                                            MTIFusion fusion = MTIFusion::beforeFirstFrame,
                                            int threads = 0) const;
};

/// Fails as internal when the validation layer had anything to say; to be called when all rendering is done.
void checkValidation(const MTIContext& context);

}  // namespace qv::host
