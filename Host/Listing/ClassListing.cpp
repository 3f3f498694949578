#include "Host/Listing/ClassListing.h"

#include <algorithm>

#include "Host/Clips/Timeline.h"
#include "Host/CommandLine/Failure.h"
#include "QVFilterCore/QVMTIFilter.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

/// A text that a record may leave empty.
Json textOrNull(std::string_view text) {
    return text.empty() ? Json() : Json(text);
}

/// "user" or "host"; "none" for what changes no picture of the class.
std::string_view driverName(const QVFilterClass& filterClass, const QVProperty& property) {
    if (filterClass.ignores(property.name)) return "none";
    return property.driver == QVPropertyDriver::host ? "host" : "user";
}

Json propertyToJSON(const QVFilterClass& filterClass, const QVProperty& property, const QVMTIFilter& fresh) {
    const bool ranged =
        property.maximum < kUnlimited && (property.hasNumbers() || !property.variants.empty());
    Json json = {
        {"name", property.name}, {"title", property.displayTitle()}, {"type", typeName(property.type)}};
    json["min"] = ranged ? Json(shortestNumber(property.minimum)) : Json();
    json["max"] = ranged ? Json(shortestNumber(property.maximum)) : Json();
    json["step"] = property.hasNumbers() ? Json(property.controlStep()) : Json();
    json["unit"] = textOrNull(unitName(property.unit));
    json["driver"] = driverName(filterClass, property);
    json["default"] = propertyValueToJSON(property.get(fresh));
    if (property.type == QVPropertyType::color) json["default"] = json["default"].at(0);
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

std::string propertyLine(const QVProperty& property, const QVMTIFilter& fresh) {
    std::string range = rangeText(property);
    if (!property.variants.empty()) range = fmt::format("{}", fmt::join(property.variants, ", "));
    const QVPropertyValue value = property.get(fresh);
    const std::string initial =
        property.variants.empty()
            ? propertyValueToText(value)
            : std::string(property.variants[std::size_t(std::get<std::int64_t>(value))]);
    return fmt::format("    {:<24} {:<10} {:<28} {}: {} (default {})\n", property.name,
                       typeName(property.type), range, property.displayTitle(), property.help,
                       initial.empty() ? "none" : initial);
}

}  // namespace

std::unique_ptr<QVMTIFilter> newInstance(const QVFilterClass& filterClass) {
    std::unique_ptr<QVMTIFilter> filter = filterClass.create();
    if (!filter) fail(ExitCode::internal, "{} cannot be created", filterClass.name);
    return filter;
}

std::string rangeText(const QVProperty& property) {
    if (!property.hasNumbers()) return {};
    // What is a plain number reads as one.
    const bool isPlain = property.unit == QVUnit::fraction || property.unit == QVUnit::factor ||
                         property.unit == QVUnit::count;
    const std::string unit(isPlain ? "" : unitName(property.unit));
    if (property.maximum >= kUnlimited) return unit;
    return fmt::format("{} to {}{}{}", shortestNumber(property.minimum), shortestNumber(property.maximum),
                       unit.empty() ? "" : " ", unit);
}

Json classToJSON(const QVFilterClass& filterClass) {
    const auto fresh = newInstance(filterClass);
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
        json["properties"].push_back(propertyToJSON(filterClass, *property, *fresh));
    }
    return json;
}

std::string classToText(const QVFilterClass& filterClass) {
    const auto fresh = newInstance(filterClass);
    std::string text = fmt::format("{}: {}\n  {}\n", filterClass.name, filterClass.title, filterClass.help);
    const auto line = [&text](std::string_view label, const auto& value) {
        text += fmt::format("  {:<16}{}\n", label, value);
    };
    line("kind", kindName(filterClass.kindOrInherited()));
    line("category", categoryName(filterClass.categoryOrInherited()));
    if (filterClass.superclass) line("superclass", filterClass.superclass->name);
    line("shader function", filterClass.fragmentFunctionDescriptor().name);
    if (!filterClass.tags.empty()) line("tags", fmt::format("{}", fmt::join(filterClass.tags, ", ")));
    if (filterClass.levels() > 0) line("levels", filterClass.levels());
    if (filterClass.property("effectValue")) line("strength", filterClass.defaultStrength());
    if (filterClass.videoOnly()) line("for", "video only");

    text += "  inputs\n";
    for (const QVInput& input : filterClass.allInputs()) {
        text += fmt::format("    {:<24} {:<10} {:<28} {}\n", input.name, roleName(input.role),
                            input.isRequired ? "" : "optional", input.help);
    }
    const auto properties = filterClass.allProperties();
    for (std::string_view driver : {"user", "host", "none"}) {
        std::string lines;
        for (const QVProperty* property : properties) {
            if (driverName(filterClass, *property) == driver) lines += propertyLine(*property, *fresh);
        }
        if (lines.empty()) continue;
        text += driver == "user"   ? "  properties\n"
                : driver == "host" ? "  properties that the host sets\n"
                                   : "  properties that change nothing\n";
        text += lines;
    }
    return text;
}

}  // namespace qv::host
