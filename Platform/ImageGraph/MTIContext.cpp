// Which device a context is made on.

#include "Platform/ImageGraph/MTIContext.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/Native/NativeDevice.h"
#include "Platform/ImageGraph/Vulkan/VulkanContext.h"

namespace qv {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::shared_ptr<MTIContext> makeVulkanContext(const MTIContextOptions& options) {
    return std::make_shared<VulkanContext>(std::make_shared<DeviceResources>(options), options);
}

std::vector<GraphicsDevice> vulkanDevices(std::string* error = nullptr) {
    try {
        return VulkanDevice::enumerate();
    } catch (const std::exception& failure) {
        setError(error, failure);
        return {};
    }
}

MTIDeviceKind kindOfDevice(int index) {
    const std::vector<GraphicsDevice> devices = MTIContext::devices();
    if (index < int(devices.size())) return devices[std::size_t(index)].kind;
    const std::size_t count = devices.size();
    throw RenderError(fmt::format("there is no device {}; {}", index,
                                  count == 0 ? "there is none at all"
                                  : count == 1
                                      ? "there is 1, number 0"
                                      : fmt::format("there are {}, numbers 0 to {}", count, count - 1)));
}

MTIDeviceKind kindFor(const MTIContextOptions& options) {
    if (options.deviceKind != MTIDeviceKind::any) return options.deviceKind;
    if (options.deviceIndex >= 0) return kindOfDevice(options.deviceIndex);
    if (options.validation || options.gpuPaths) return MTIDeviceKind::vulkan;
    const std::string wanted = environment("QVFILTER_DEVICE");
    if (wanted == "vulkan") return MTIDeviceKind::vulkan;
    if (wanted == "native") return MTIDeviceKind::native;
    if (!wanted.empty()) throw RenderError("QVFILTER_DEVICE is vulkan or native, not '" + wanted + "'");
    return MTIDeviceKind::any;
}

/// Whether the system has a file that drivers of GPUs work through. Where there is none, asking Vulkan would
/// only load all drivers, with tens of megabytes of compilers.
bool mayHaveGPU() {
    constexpr std::string_view kNames[] = {"dri", "nvidia", "dxg", "mali", "kgsl", "pvr"};
    std::error_code failure;
    const std::filesystem::directory_iterator files("/dev", failure);
    return failure || std::ranges::any_of(files, [&](const std::filesystem::directory_entry& file) {
               const std::string name = file.path().filename();
               return std::ranges::any_of(kNames,
                                          [&](std::string_view known) { return name.starts_with(known); });
           });
}

bool hasGPU() {
    return mayHaveGPU() && std::ranges::any_of(vulkanDevices(), [](const GraphicsDevice& device) {
               return !device.isProcessor && device.unusable.empty();
           });
}

std::shared_ptr<MTIContext> makeMostCapable(const MTIContextOptions& options) {
    if (!hasGPU()) {
        try {
            return makeNativeContext(options);
        } catch (const RenderError& failure) {
            logLineOnce(fmt::format("rendering with software Vulkan: {}", failure.what()));
        }
    }
    return makeVulkanContext(options);
}

}  // namespace

std::string defaultShaderCacheDirectory() {
    std::string base = environment("XDG_CACHE_HOME");
    if (base.empty() && !environment("HOME").empty()) base = environment("HOME") + "/.cache";
    return base.empty() ? base : base + "/QVFilterExtension/shaders";
}

std::vector<GraphicsDevice> MTIContext::devices(std::string* error) {
    try {
        std::string cause;
        std::vector<GraphicsDevice> devices = vulkanDevices(&cause);
        GraphicsDevice native = nativeDevice();
        native.index = int(devices.size());
        if (native.unusable.empty()) devices.push_back(std::move(native));
        if (devices.empty()) throw RenderError(cause.empty() ? "there is no device" : cause);
        return devices;
    } catch (const std::exception& failure) {
        setError(error, failure);
        return {};
    }
}

std::shared_ptr<MTIContext> MTIContext::create(const MTIContextOptions& options, std::string* error) {
    try {
        switch (kindFor(options)) {
            case MTIDeviceKind::vulkan:
                return makeVulkanContext(options);
            case MTIDeviceKind::native:
                return makeNativeContext(options);
            case MTIDeviceKind::any:
                break;
        }
        return makeMostCapable(options);
    } catch (const std::exception& failure) {
        setError(error, failure);
        return nullptr;
    }
}

std::shared_ptr<MTIContext> MTIContext::create(const MTIVulkanDevice& device,
                                               const MTIContextOptions& options, std::string* error) {
    try {
        return std::make_shared<VulkanContext>(std::make_shared<DeviceResources>(device, options), options);
    } catch (const std::exception& failure) {
        setError(error, failure);
        return nullptr;
    }
}

}  // namespace qv
