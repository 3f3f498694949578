#include "QVFilterExtension/QVFilterClassJSON.h"

#include "QVFilterCore/QVMTIFilter.h"

#include <nlohmann/json.hpp>

namespace qv {

namespace {

using Json = nlohmann::ordered_json;

/// A text that a record may leave empty.
Json textOrNull(std::string_view text) {
    return text.empty() ? Json() : Json(text);
}

Json numbersToJSON(const auto& values) {
    Json array = Json::array();
    for (const double value : values) array.push_back(shortestNumber(value));
    return array;
}

/// Booleans and numbers as such, colours as "#rrggbb" in an array, everything else as an array of numbers.
struct ToJSON {
    Json operator()(bool value) const { return value; }
    Json operator()(std::int64_t value) const { return value; }
    Json operator()(double value) const { return shortestNumber(value); }
    Json operator()(const MTIVector& vector) const { return numbersToJSON(vector.values()); }
    Json operator()(const std::vector<UIColor>& colors) const {
        Json array = Json::array();
        for (const UIColor& color : colors) array.push_back(color.hex());
        return array;
    }
    Json operator()(const std::vector<double>& values) const { return numbersToJSON(values); }
    Json operator()(const CGAffineTransform& t) const {
        return numbersToJSON(std::initializer_list<double>{t.a, t.b, t.c, t.d, t.tx, t.ty});
    }
    Json operator()(const CMTimeRange& range) const {
        return numbersToJSON(
            std::initializer_list<double>{CMTimeGetSeconds(range.start), CMTimeGetSeconds(range.duration)});
    }
};

Json propertyToJSON(const QVFilterClass& filterClass, const QVProperty& property, const QVMTIFilter* fresh) {
    const bool ranged =
        property.maximum < kUnlimited && (property.hasNumbers() || !property.variants.empty());
    Json json = {
        {"name", property.name}, {"title", property.displayTitle()}, {"type", typeName(property.type)}};
    json["min"] = ranged ? Json(shortestNumber(property.minimum)) : Json();
    json["max"] = ranged ? Json(shortestNumber(property.maximum)) : Json();
    json["step"] = property.hasNumbers() ? Json(property.controlStep()) : Json();
    json["unit"] = textOrNull(unitName(property.unit));
    json["driver"] = filterClass.driverName(property);
    json["default"] = fresh ? std::visit(ToJSON{}, property.get(*fresh)) : Json();
    if (property.type == QVPropertyType::color && fresh) json["default"] = json["default"].at(0);
    json["help"] = property.help;
    if (!property.variants.empty()) {
        json["variants"] = std::vector<std::string_view>(property.variants.begin(), property.variants.end());
    }
    return json;
}

Json inputToJSON(const QVInput& input) {
    return {{"name", input.name},
            {"role", roleName(input.role)},
            {"type", input.isBuffer ? "pixelBuffer" : "image"},
            {"required", input.isRequired},
            {"help", input.help}};
}

}  // namespace

std::string filterClassJSON(const QVFilterClass& filterClass) {
    const auto fresh = filterClass.create();
    Json json;
    json["name"] = filterClass.name;
    json["title"] = filterClass.title;
    json["tags"] = filterClass.tags;
    json["kind"] = kindName(filterClass.kindOrInherited());
    json["superclass"] = filterClass.superclass ? Json(filterClass.superclass->name) : Json();
    json["category"] = categoryName(filterClass.categoryOrInherited());
    json["help"] = filterClass.help;
    json["levelCount"] = filterClass.levels();
    json["defaultEffectValue"] = shortestNumber(filterClass.defaultStrength());
    json["isVideoOnly"] = filterClass.videoOnly();
    json["isPhotoTimeConst"] = filterClass.photoTimeConst();
    json["inputs"] = Json::array();
    for (const QVInput& input : filterClass.allInputs()) json["inputs"].push_back(inputToJSON(input));
    json["fragmentFunction"] = filterClass.fragmentFunctionDescriptor().name;
    json["properties"] = Json::array();
    for (const QVProperty* property : filterClass.allProperties()) {
        json["properties"].push_back(propertyToJSON(filterClass, *property, fresh.get()));
    }
    return json.dump();
}

}  // namespace qv
