#include "Host/Listing/ClassListing.h"

#include <algorithm>

#include "Host/Clips/Timeline.h"
#include "Host/CommandLine/Failure.h"
#include "QVFilterCore/QVMTIFilter.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

/// A limit that only keeps numbers finite is not worth reading.
constexpr double kAsGoodAsUnlimited = 1e9;

Json propertyToJSON(const QVProperty& property, const QVMTIFilter& fresh) {
    Json json = {{"name", property.name}, {"type", typeName(property.type)}};
    json["min"] = hasRange(property.type) ? Json(shortestNumber(property.minimum)) : Json();
    json["max"] = hasRange(property.type) ? Json(shortestNumber(property.maximum)) : Json();
    json["default"] = propertyValueToJSON(property.get(fresh));
    if (property.type == QVPropertyType::color) json["default"] = json["default"].at(0);
    json["help"] = property.help;
    if (!property.variants.empty()) {
        json["variants"] = std::vector<std::string_view>(property.variants.begin(), property.variants.end());
    }
    return json;
}

}  // namespace

std::unique_ptr<QVMTIFilter> newInstance(const QVFilterClass& filterClass) {
    std::unique_ptr<QVMTIFilter> filter = filterClass.create();
    if (!filter) fail(ExitCode::internal, "{} cannot be created", filterClass.name);
    return filter;
}

std::string rangeText(const QVProperty& property) {
    if (!hasRange(property.type) || property.maximum >= kAsGoodAsUnlimited) return {};
    return fmt::format("{} to {}", shortestNumber(property.minimum), shortestNumber(property.maximum));
}

std::string_view kindName(QVFilterKind kind) {
    switch (kind) {
        case QVFilterKind::effect:
            return "effect";
        case QVFilterKind::transition:
            return "transition";
        case QVFilterKind::auxiliary:
            return "auxiliary";
    }
    return "";
}

Json classToJSON(const QVFilterClass& filterClass) {
    const auto fresh = newInstance(filterClass);
    Json json;
    json["name"] = filterClass.name;
    json["kind"] = kindName(filterClass.kindOrInherited());
    json["superclass"] = filterClass.superclass ? Json(filterClass.superclass->name) : Json();
    json["category"] = categoryName(filterClass.categoryOrInherited());
    json["help"] = filterClass.help;
    json["levelCount"] = filterClass.levels();
    json["defaultEffectValue"] = shortestNumber(filterClass.defaultStrength());
    json["isVideoOnly"] = filterClass.videoOnly();
    json["isPhotoTimeConst"] = filterClass.photoTimeConst();
    json["inputs"] = inputNames(filterClass);
    json["fragmentFunction"] = filterClass.fragmentFunctionDescriptor().name;
    json["properties"] = Json::array();
    for (const QVProperty* property : filterClass.allProperties()) {
        json["properties"].push_back(propertyToJSON(*property, *fresh));
    }
    return json;
}

std::string classToText(const QVFilterClass& filterClass) {
    const auto fresh = newInstance(filterClass);
    std::string text = fmt::format("{}: {}\n", filterClass.name, filterClass.help);
    const auto line = [&text](std::string_view label, const auto& value) {
        text += fmt::format("  {:<16}{}\n", label, value);
    };
    line("kind", kindName(filterClass.kindOrInherited()));
    line("category", categoryName(filterClass.categoryOrInherited()));
    if (filterClass.superclass) line("superclass", filterClass.superclass->name);
    line("inputs", fmt::format("{}", fmt::join(inputNames(filterClass), ", ")));
    line("shader function", filterClass.fragmentFunctionDescriptor().name);
    if (filterClass.levels() > 0) line("levels", filterClass.levels());
    if (filterClass.property("effectValue")) line("strength", filterClass.defaultStrength());
    if (filterClass.videoOnly()) line("for", "video only");

    const auto properties = filterClass.allProperties();
    if (!properties.empty()) text += "  properties\n";
    for (const QVProperty* property : properties) {
        std::string range = rangeText(*property);
        if (!property->variants.empty()) range = fmt::format("{}", fmt::join(property->variants, ", "));
        const std::string initial = propertyValueToText(property->get(*fresh));
        text +=
            fmt::format("    {:<24} {:<10} {:<22} {} (default {})\n", property->name,
                        typeName(property->type), range, property->help, initial.empty() ? "none" : initial);
    }
    return text;
}

}  // namespace qv::host
