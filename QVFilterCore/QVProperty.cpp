#include <charconv>
#include <cmath>
#include <optional>

#include "Platform/Foundation/Log.h"
#include "QVFilterCore/QVFilterClass.h"
#include "QVFilterCore/QVMTIFilter.h"

#include <fmt/format.h>

namespace qv {

namespace {

std::optional<double> parseNumber(std::string_view text) {
    double value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

/// All numbers of a comma-separated list, or nothing when one of them is none. Empty text is an empty list.
std::optional<std::vector<double>> parseNumbers(std::string_view text) {
    std::vector<double> numbers;
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        const auto number = parseNumber(text.substr(0, comma));
        if (!number) return std::nullopt;
        numbers.push_back(*number);
        if (comma == std::string_view::npos) break;
        text.remove_prefix(comma + 1);
        if (text.empty()) return std::nullopt;
    }
    return numbers;
}

std::optional<std::vector<UIColor>> parseColors(std::string_view text) {
    std::vector<UIColor> colors;
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        const auto color = UIColor::fromHex(text.substr(0, comma));
        if (!color) return std::nullopt;
        colors.push_back(*color);
        if (comma == std::string_view::npos) break;
        text.remove_prefix(comma + 1);
        if (text.empty()) return std::nullopt;
    }
    return colors;
}

std::string_view expectation(QVPropertyType type) {
    switch (type) {
        case QVPropertyType::boolean:
            return "true or false";
        case QVPropertyType::integer:
            return "a whole number";
        case QVPropertyType::real:
            return "a number";
        case QVPropertyType::vector:
            return "one to four numbers, as 0.1,0.2";
        case QVPropertyType::color:
            return "a colour, as #ff00fc";
        case QVPropertyType::colors:
            return "colours, as #ff00fc,#ffffff";
        case QVPropertyType::numbers:
            return "numbers, as 0.3,0.5";
        case QVPropertyType::transform:
            return "six numbers a,b,c,d,tx,ty";
        case QVPropertyType::timeRange:
            return "start,duration in seconds";
    }
    return "";
}

std::optional<QVPropertyValue> read(const QVProperty& property, std::string_view text) {
    switch (property.type) {
        case QVPropertyType::boolean:
            if (text == "true" || text == "1" || text == "yes") return true;
            if (text == "false" || text == "0" || text == "no") return false;
            return std::nullopt;
        case QVPropertyType::integer: {
            for (std::size_t i = 0; i < property.variants.size(); ++i) {
                if (text == property.variants[i]) return std::int64_t(i);
            }
            std::int64_t value = 0;
            const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
            if (failure != std::errc() || end != text.data() + text.size()) return std::nullopt;
            return value;
        }
        case QVPropertyType::real:
            if (const auto number = parseNumber(text)) return *number;
            return std::nullopt;
        case QVPropertyType::color:
            if (const auto color = UIColor::fromHex(text)) return std::vector<UIColor>{*color};
            return std::nullopt;
        case QVPropertyType::colors:
            if (auto colors = parseColors(text)) return *std::move(colors);
            return std::nullopt;
        default:
            break;
    }
    const auto numbers = parseNumbers(text);
    if (!numbers) return std::nullopt;
    const std::vector<double>& n = *numbers;
    switch (property.type) {
        case QVPropertyType::vector: {
            if (n.empty() || n.size() > 4) return std::nullopt;
            const std::vector<float> narrowed(n.begin(), n.end());
            return MTIVector(std::span<const float>(narrowed));
        }
        case QVPropertyType::numbers:
            return n;
        case QVPropertyType::transform:
            if (n.size() != 6) return std::nullopt;
            return CGAffineTransform{n[0], n[1], n[2], n[3], n[4], n[5]};
        case QVPropertyType::timeRange: {
            // Microseconds: exact for the fractions people type, fine enough for frame times.
            constexpr std::int32_t kScale = 1000000;
            if (n.size() != 2 || n[1] < 0 || std::abs(n[0]) > 1e9 || n[1] > 1e9) return std::nullopt;
            return CMTimeRange{CMTimeMakeWithSeconds(n[0], kScale), CMTimeMakeWithSeconds(n[1], kScale)};
        }
        default:
            return std::nullopt;
    }
}

bool checkRange(const QVProperty& property, const QVPropertyValue& value, std::string* error) {
    double number = 0;
    if (const auto* real = std::get_if<double>(&value))
        number = *real;
    else if (const auto* integer = std::get_if<std::int64_t>(&value))
        number = double(*integer);
    else
        return true;
    if (number >= property.minimum && number <= property.maximum) return true;
    if (error) {
        *error = fmt::format("{} is {}, outside {} to {}", property.name, number, property.minimum,
                             property.maximum);
    }
    return false;
}

}  // namespace

std::optional<QVPropertyValue> parseProperty(const QVProperty& property, std::string_view text,
                                             std::string* error) {
    auto value = read(property, text);
    if (!value) {
        if (error)
            *error = fmt::format("{} takes {}, not '{}'", property.name, expectation(property.type),
                                 oneLine(text));
        return std::nullopt;
    }
    if (!checkRange(property, *value, error)) return std::nullopt;
    return value;
}

bool setProperty(QVMTIFilter& filter, std::string_view name, const QVPropertyValue& value,
                 std::string* error) {
    const QVProperty* property = filter.filterClass().property(name);
    if (!property) {
        if (error) *error = fmt::format("{} has no property '{}'", filter.filterClass().name, oneLine(name));
        return false;
    }
    const auto* colors = std::get_if<std::vector<UIColor>>(&value);
    const bool fits = property->type != QVPropertyType::color || (colors && colors->size() == 1);
    if (value.index() != property->get(filter).index() || !fits) {
        if (error) *error = fmt::format("{} takes {}", name, expectation(property->type));
        return false;
    }
    if (!checkRange(*property, value, error)) return false;
    property->set(filter, value);
    return true;
}

bool setPropertyFromText(QVMTIFilter& filter, std::string_view name, std::string_view text,
                         std::string* error) {
    const QVProperty* property = filter.filterClass().property(name);
    if (!property) {
        if (error) *error = fmt::format("{} has no property '{}'", filter.filterClass().name, oneLine(name));
        return false;
    }
    const auto value = parseProperty(*property, text, error);
    if (!value) return false;
    property->set(filter, *value);
    return true;
}

}  // namespace qv
