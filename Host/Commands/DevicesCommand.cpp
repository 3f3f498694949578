#include <memory>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Device.h"
#include "Host/CommandLine/JSON.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

Json deviceToJSON(const GraphicsDevice& device) {
    return {{"index", device.index},
            {"name", device.name},
            {"kind", device.kind == MTIDeviceKind::native ? "native" : "vulkan"},
            {"driver", device.driver},
            {"apiVersion", device.apiVersion},
            {"isProcessor", device.isProcessor},
            {"memoryBytes", device.memoryBytes},
            {"unusable", device.unusable.empty() ? Json() : Json(device.unusable)}};
}

std::string deviceToText(const GraphicsDevice& device) {
    const bool isVulkan = device.kind == MTIDeviceKind::vulkan;
    return fmt::format("{}  {}  ({}{}, {} MiB{}){}\n", device.index, device.name, device.driver,
                       isVulkan ? ", Vulkan " + device.apiVersion : "", device.memoryBytes >> 20,
                       isVulkan && device.isProcessor ? ", software" : "",
                       device.unusable.empty() ? "" : "  unusable: " + device.unusable);
}

}  // namespace

void addDevicesCommand(CommandParser& tool) {
    const Command command =
        tool.addCommand("devices", "Lists what can render: Vulkan devices and the processor");
    auto json = std::make_shared<bool>(false);
    addJSONFlag(command, *json);
    command.setAction([json] {
        Json array = Json::array();
        std::string text;
        for (const GraphicsDevice& device : graphicsDevices()) {
            array.push_back(deviceToJSON(device));
            text += deviceToText(device);
        }
        writeStandardOutput(*json ? dump(array) : text);
    });
}

}  // namespace qv::host
