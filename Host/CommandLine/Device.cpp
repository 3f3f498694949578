#include "Host/CommandLine/Device.h"

#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Failure.h"
#include "QVFilterCore/QVMTIFilter.h"

namespace qv::host {

std::vector<GraphicsDevice> vulkanDevices() {
    std::string cause;
    std::vector<GraphicsDevice> devices = MTIContext::devices(&cause);
    if (devices.empty()) fail(ExitCode::device, "{}", cause.empty() ? "there is no Vulkan device" : cause);
    return devices;
}

void DeviceOptions::add(const Command& command) {
    command.option("--device", device,
                   "Index of the Vulkan device (qvfilter devices); the most capable without");
    command.flag("--no-fusion", noFusion, "Draw every pass by itself");
    command.flag("--validate", validate, "Check every Vulkan call with the validation layer");
}

std::shared_ptr<MTIContext> DeviceOptions::makeContext(MTIPixelFormat workingFormat,
                                                       MTIFusion fusion) const {
    MTIContextOptions options;
    if (device && *device < 0)
        fail(ExitCode::usage, "--device takes a number that qvfilter devices lists, not '{}'", *device);
    options.deviceIndex = device.value_or(-1);
    options.workingPixelFormat = workingFormat;
    options.validation = validate;
    options.fusion = noFusion ? MTIFusion::off : fusion;
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
