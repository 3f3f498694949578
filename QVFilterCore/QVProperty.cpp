#include "QVFilterCore/QVProperty.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "Platform/Foundation/Log.h"
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
        case QVPropertyType::point:
            return "a place x,y, as 0.1,0.2";
        case QVPropertyType::size:
            return "width,height, as 640,360";
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
        case QVPropertyType::point:
        case QVPropertyType::size:
            if (n.size() != 2) return std::nullopt;
            return MTIVector{float(n[0]), float(n[1])};
        case QVPropertyType::numbers:
            return n;
        case QVPropertyType::transform:
            if (n.size() != 6) return std::nullopt;
            return CGAffineTransform{n[0], n[1], n[2], n[3], n[4], n[5]};
        case QVPropertyType::timeRange:
            if (n.size() != 2 || n[1] < 0 || std::abs(n[0]) > 1e9 || n[1] > 1e9) return std::nullopt;
            return CMTimeRangeMakeWithSeconds(n[0], n[1]);
        default:
            return std::nullopt;
    }
}

/// The numbers of a value that a range bounds.
std::vector<double> numbersOf(const QVPropertyValue& value) {
    if (const auto* real = std::get_if<double>(&value)) return {*real};
    if (const auto* integer = std::get_if<std::int64_t>(&value)) return {double(*integer)};
    if (const auto* list = std::get_if<std::vector<double>>(&value)) return *list;
    if (const auto* vector = std::get_if<MTIVector>(&value))
        return {vector->values().begin(), vector->values().end()};
    return {};
}

bool checkRange(const QVProperty& property, const QVPropertyValue& value, std::string* error) {
    for (double number : numbersOf(value)) {
        if (number >= property.minimum && number <= property.maximum) continue;
        if (error) {
            *error = fmt::format("{} is {}, outside {} to {}", property.name, number, property.minimum,
                                 property.maximum);
        }
        return false;
    }
    return true;
}

/// Whether a value of the right alternative has as many elements as the type asks for.
bool hasFittingCount(QVPropertyType type, const QVPropertyValue& value) {
    if (type == QVPropertyType::color) return std::get<std::vector<UIColor>>(value).size() == 1;
    const bool isPair = type == QVPropertyType::point || type == QVPropertyType::size;
    return !isPair || std::get<MTIVector>(value).count() == 2;
}

/// The closest of 1, 2 and 5 times a power of ten that is not above `value`.
double roundStep(double value) {
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    const double digit = value / power;
    return power * (digit < 2 ? 1 : digit < 5 ? 2 : 5);
}

std::string listText(const auto& values) {
    std::string text;
    for (const double value : values) {
        if (!text.empty()) text += ',';
        text += fmt::format("{}", shortestNumber(value));
    }
    return text;
}

struct ToText {
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(std::int64_t value) const { return fmt::format("{}", value); }
    std::string operator()(double value) const { return fmt::format("{}", shortestNumber(value)); }
    std::string operator()(const MTIVector& vector) const { return listText(vector.values()); }
    std::string operator()(const std::vector<UIColor>& colors) const {
        std::string text;
        for (const UIColor& color : colors) {
            if (!text.empty()) text += ',';
            text += color.hex();
        }
        return text;
    }
    std::string operator()(const std::vector<double>& values) const { return listText(values); }
    std::string operator()(const CGAffineTransform& t) const {
        return listText(std::array{t.a, t.b, t.c, t.d, t.tx, t.ty});
    }
    std::string operator()(const CMTimeRange& range) const {
        return listText(std::array{CMTimeGetSeconds(range.start), CMTimeGetSeconds(range.duration)});
    }
};

}  // namespace

std::string_view typeName(QVPropertyType type) {
    static constexpr std::array<std::string_view, 10> kNames = {
        "bool", "int", "float", "point", "size", "color", "colors", "numbers", "transform", "timeRange"};
    return kNames[std::size_t(type)];
}

std::string_view unitName(QVUnit unit) {
    static constexpr std::array<std::string_view, 13> kNames = {"",
                                                                "fraction",
                                                                "factor",
                                                                "count",
                                                                "seconds",
                                                                "pixels",
                                                                "pixels at 1080",
                                                                "frame sides",
                                                                "half frame sides",
                                                                "radians",
                                                                "turns",
                                                                "percent",
                                                                "stops"};
    return kNames[std::size_t(unit)];
}

std::string QVProperty::displayTitle() const {
    if (!title.empty()) return std::string(title);
    std::string words;
    for (char c : name) {
        const bool begins = std::isupper(static_cast<unsigned char>(c));
        if (begins && !words.empty()) words += ' ';
        const auto letter = static_cast<unsigned char>(c);
        words += char(words.empty() ? std::toupper(letter) : std::tolower(letter));
    }
    return words;
}

bool QVProperty::hasNumbers() const {
    switch (type) {
        case QVPropertyType::integer:
            return variants.empty();
        case QVPropertyType::real:
        case QVPropertyType::point:
        case QVPropertyType::size:
        case QVPropertyType::numbers:
            return true;
        default:
            return false;
    }
}

double QVProperty::controlStep() const {
    if (!hasNumbers()) return 0;
    if (type == QVPropertyType::integer) return 1;
    if (step > 0) return step;
    constexpr double kSteps = 100, kUsual = 0.01;
    return maximum >= kUnlimited ? kUsual : roundStep((maximum - minimum) / kSteps);
}

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

double shortestNumber(double value) {
    const float narrowed = float(value);
    if (double(narrowed) != value) return value;
    return std::strtod(fmt::format("{}", narrowed).c_str(), nullptr);
}

std::string propertyText(const QVPropertyValue& value) {
    return std::visit(ToText{}, value);
}

bool setProperty(QVMTIFilter& filter, std::string_view name, const QVPropertyValue& value,
                 std::string* error) {
    const QVProperty* property = filter.filterClass().property(name);
    if (!property) {
        if (error) *error = fmt::format("{} has no property '{}'", filter.filterClass().name, oneLine(name));
        return false;
    }
    if (value.index() != property->get(filter).index() || !hasFittingCount(property->type, value)) {
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
