#include "Platform/Geometry/UIColor.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace qv {

UIColor UIColor::colorWithHueSaturationBrightnessAlpha(double hue, double saturation, double brightness,
                                                       double alpha) {
    saturation = std::clamp(saturation, 0.0, 1.0);
    brightness = std::clamp(brightness, 0.0, 1.0);
    // Each component is the brightness less a ramp of the hue's distance from that component's own hue
    // (A. R. Smith, "Color gamut transform pairs", 1978, in the form without a case for each sixth).
    double sixths = (hue - std::floor(hue)) * 6;
    auto component = [&](double offset) {
        double k = std::fmod(offset + sixths, 6.0);
        return brightness * (1 - saturation * std::clamp(std::min(k, 4 - k), 0.0, 1.0));
    };
    return {component(5), component(3), component(1), alpha};
}

UIColor::HSBA UIColor::getHueSaturationBrightnessAlpha() const {
    double highest = std::max({red_, green_, blue_}), lowest = std::min({red_, green_, blue_});
    double range = highest - lowest;
    if (!(range > 0) || !(highest > 0)) return {0, 0, highest, alpha_};
    double sixths = highest == red_     ? (green_ - blue_) / range
                    : highest == green_ ? (blue_ - red_) / range + 2
                                        : (red_ - green_) / range + 4;
    double hue = sixths / 6;
    hue -= std::floor(hue);
    return {hue < 1 ? hue : 0, range / highest, highest, alpha_};
}

std::optional<UIColor> UIColor::fromHex(std::string_view text) {
    if (text.empty() || text.front() != '#') return std::nullopt;
    text.remove_prefix(1);
    std::uint32_t bits = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bits, 16);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    auto byte = [&](int shift) { return double(bits >> shift & 0xff) / 255; };
    auto nibble = [&](int shift) { return double(bits >> shift & 0xf) / 15; };
    switch (text.size()) {
        case 3:
            return UIColor(nibble(8), nibble(4), nibble(0));
        case 6:
            return UIColor(byte(16), byte(8), byte(0));
        case 8:
            return UIColor(byte(24), byte(16), byte(8), byte(0));
        default:
            return std::nullopt;
    }
}

std::string UIColor::hex() const {
    // The comparison is written so that NaN becomes 0.
    auto byte = [](double component) {
        return component > 0 ? int(std::lround(std::min(component, 1.0) * 255)) : 0;
    };
    auto text = fmt::format("#{:02x}{:02x}{:02x}", byte(red_), byte(green_), byte(blue_));
    if (byte(alpha_) != 255) text += fmt::format("{:02x}", byte(alpha_));
    return text;
}

}  // namespace qv
