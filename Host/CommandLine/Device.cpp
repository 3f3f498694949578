#include "Host/CommandLine/Device.h"

#include <charconv>

#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Failure.h"
#include "QVFilterCore/QVMTIFilter.h"

namespace qv::host {

namespace {

void choose(const std::string& device, MTIContextOptions& options) {
    if (device.empty()) return;
    if (device == "native" || device == "vulkan") {
        options.deviceKind = device == "native" ? MTIDeviceKind::native : MTIDeviceKind::vulkan;
        return;
    }
    const char* const end = device.data() + device.size();
    const auto [stop, problem] = std::from_chars(device.data(), end, options.deviceIndex);
    if (problem != std::errc() || stop != end || options.deviceIndex < 0) {
        fail(ExitCode::usage,
             "--device takes native, vulkan or a number that qvfilter devices lists, not '{}'", device);
    }
}

}  // namespace

std::vector<GraphicsDevice> graphicsDevices() {
    std::string cause;
    std::vector<GraphicsDevice> devices = MTIContext::devices(&cause);
    if (devices.empty()) fail(ExitCode::device, "{}", cause.empty() ? "there is no device" : cause);
    return devices;
}

void DeviceOptions::add(const Command& command) {
    command.option("--device", device,
                   "native, vulkan, or the index of a device (qvfilter devices); the most capable without");
    command.flag("--no-fusion", noFusion, "Draw every pass by itself");
    command
        .option("--texture-memory", textureMemory,
                "MiB of memory that idle textures may hold; fewer for a machine with little")
        .range(0, 1 << 20);
    command.flag("--validate", validate, "Check every Vulkan call with the validation layer");
}

std::shared_ptr<MTIContext> DeviceOptions::makeContext(MTIPixelFormat workingFormat, MTIFusion fusion,
                                                       int threads) const {
    MTIContextOptions options;
    options.threads = threads;
    choose(device, options);
    options.workingPixelFormat = workingFormat;
    options.validation = validate;
    options.fusion = noFusion ? MTIFusion::off : fusion;
    if (textureMemory) options.textureBudgetBytes = std::uint64_t(*textureMemory) << 20;
    std::string cause;
    auto context = MTIContext::create(options, &cause);
    if (!context) fail(ExitCode::device, "{}", cause);
    QVMTIFilter::setSharedContext(context);
    return context;
}

void checkValidation(const MTIContext& context) {
    const auto messages = context.validationMessages();
    if (messages.empty()) return;
    fail(ExitCode::internal, "{} validation messages, the first: {}", messages.size(), messages.front());
}

}  // namespace qv::host
