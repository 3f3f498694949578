#include "Host/Listing/PropertyJSON.h"

#include <cmath>
#include <cstdlib>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

Json numbersToJSON(std::initializer_list<double> values) {
    Json array = Json::array();
    for (double value : values) array.push_back(shortestNumber(value));
    return array;
}

struct ToJSON {
    Json operator()(bool value) const { return value; }
    Json operator()(std::int64_t value) const { return value; }
    Json operator()(double value) const { return shortestNumber(value); }
    Json operator()(const MTIVector& vector) const {
        Json array = Json::array();
        for (float value : vector.values()) array.push_back(shortestNumber(value));
        return array;
    }
    Json operator()(const std::vector<UIColor>& colors) const {
        Json array = Json::array();
        for (const UIColor& color : colors) array.push_back(color.hex());
        return array;
    }
    Json operator()(const std::vector<double>& values) const {
        Json array = Json::array();
        for (double value : values) array.push_back(shortestNumber(value));
        return array;
    }
    Json operator()(const CGAffineTransform& t) const {
        return numbersToJSON({t.a, t.b, t.c, t.d, t.tx, t.ty});
    }
    Json operator()(const CMTimeRange& range) const {
        return numbersToJSON({CMTimeGetSeconds(range.start), CMTimeGetSeconds(range.duration)});
    }
};

}  // namespace

std::string_view typeName(QVPropertyType type) {
    switch (type) {
        case QVPropertyType::boolean:
            return "bool";
        case QVPropertyType::integer:
            return "int";
        case QVPropertyType::real:
            return "float";
        case QVPropertyType::point:
            return "point";
        case QVPropertyType::size:
            return "size";
        case QVPropertyType::color:
            return "color";
        case QVPropertyType::colors:
            return "colors";
        case QVPropertyType::numbers:
            return "numbers";
        case QVPropertyType::transform:
            return "transform";
        case QVPropertyType::timeRange:
            return "timeRange";
    }
    return "";
}

double shortestNumber(double value) {
    const float narrowed = float(value);
    if (double(narrowed) != value) return value;
    return std::strtod(fmt::format("{}", narrowed).c_str(), nullptr);
}

Json propertyValueToJSON(const QVPropertyValue& value) {
    return std::visit(ToJSON{}, value);
}

std::string propertyValueToText(const QVPropertyValue& value) {
    const Json json = propertyValueToJSON(value);
    if (!json.is_array()) return json.dump();
    std::string text;
    for (const Json& element : json) {
        if (!text.empty()) text += ',';
        text += element.is_string() ? element.get<std::string>() : element.dump();
    }
    return text;
}

std::string dump(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace qv::host
