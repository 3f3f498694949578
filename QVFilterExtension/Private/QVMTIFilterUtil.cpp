#include "QVFilterExtension/QVMTIFilterUtil.h"

#include <fmt/format.h>
#include <sys/utsname.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>

namespace qv {

namespace {

std::string readDeviceName() {
    // A board names itself in one of these, by whether it boots with ACPI or a device tree.
    for (const char* path : {"/sys/class/dmi/id/product_name", "/proc/device-tree/model"}) {
        std::ifstream file(path);
        std::string name;
        std::getline(file, name);
        while (!name.empty() && (name.back() == ' ' || name.back() == '\0')) name.pop_back();
        if (!name.empty()) return name;
    }
    utsname system{};
    return uname(&system) == 0 ? system.machine : "";
}

}  // namespace

const std::string& QVMTIFilterUtil::getDeviceName() {
    static const std::string name = readDeviceName();
    return name;
}

bool QVMTIFilterUtil::isLowEndDevice() {
    return isLowEndDevice(getDeviceName());
}

bool QVMTIFilterUtil::isLowEndDevice(std::string_view deviceName) {
    constexpr std::string_view kFamilies[] = {"iPhone2", "iPhone3", "iPhone4", "iPhone5", "iPhone6",
                                              "iPad2",   "iPad3",   "iPad4",   "iPod2",   "iPod3",
                                              "iPod4",   "iPod5",   "iPod6"};
    return std::any_of(std::begin(kFamilies), std::end(kFamilies),
                       [&](std::string_view family) { return deviceName.starts_with(family); });
}

std::string QVMTIFilterUtil::timeFormatterWithMSEC4(double seconds) {
    constexpr double kLatest = std::numeric_limits<std::int32_t>::max();
    auto tenths = seconds > 0 ? std::int64_t(std::round(std::min(seconds, kLatest) * 10)) : 0;
    auto hours = tenths / 36000, minutes = tenths % 36000 / 600, rest = tenths % 600;
    return fmt::format("{}:{:02}:{:02}:{:02}", hours, minutes, rest / 10, rest % 10);
}

MTIColor MTIColorWithUIColor(const UIColor& color) {
    return {float(color.red()), float(color.green()), float(color.blue()), float(color.alpha())};
}

UIColor HueColor(const UIColor& color, double hueOffset) {
    auto [hue, saturation, brightness, alpha] = color.getHueSaturationBrightnessAlpha();
    hue += hueOffset;
    if (hue > 1) {
        hue = std::fmod(hue, 1.0);
    } else if (hue < 0) {
        hue += 1;
    }
    return UIColor::colorWithHueSaturationBrightnessAlpha(hue, saturation, brightness, alpha);
}

std::int32_t SumN(std::int32_t n) {
    auto product = std::int32_t(std::uint32_t(n) * (std::uint32_t(n) + 1));
    return product / 2;
}

}  // namespace qv
