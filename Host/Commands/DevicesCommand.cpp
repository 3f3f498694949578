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
            {"driver", device.driver},
            {"apiVersion", device.apiVersion},
            {"isProcessor", device.isProcessor},
            {"memoryBytes", device.memoryBytes},
            {"unusable", device.unusable.empty() ? Json() : Json(device.unusable)}};
}

std::string deviceToText(const GraphicsDevice& device) {
    return fmt::format("{}  {}  ({}, Vulkan {}, {} MiB{}){}\n", device.index, device.name, device.driver,
                       device.apiVersion, device.memoryBytes >> 20, device.isProcessor ? ", software" : "",
                       device.unusable.empty() ? "" : "  unusable: " + device.unusable);
}

}  // namespace

void addDevicesCommand(CommandParser& tool) {
    const Command command = tool.addCommand("devices", "Lists the Vulkan devices");
    auto json = std::make_shared<bool>(false);
    addJSONFlag(command, *json);
    command.setAction([json] {
        Json array = Json::array();
        std::string text;
        for (const GraphicsDevice& device : vulkanDevices()) {
            array.push_back(deviceToJSON(device));
            text += deviceToText(device);
        }
        writeStandardOutput(*json ? dump(array) : text);
    });
}

}  // namespace qv::host
