#include "Host/Listing/ClassListing.h"

#include <algorithm>

#include "Host/Clips/Timeline.h"
#include "Host/CommandLine/Failure.h"
#include "QVFilterCore/QVMTIFilter.h"
#include "QVFilterExtension/QVFilterClassJSON.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

std::string propertyLine(const QVProperty& property, const QVMTIFilter& fresh) {
    std::string range = rangeText(property);
    if (!property.variants.empty()) range = fmt::format("{}", fmt::join(property.variants, ", "));
    const QVPropertyValue value = property.get(fresh);
    const std::string initial =
        property.variants.empty()
            ? propertyText(value)
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
    return Json::parse(filterClassJSON(filterClass));
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
            if (filterClass.driverName(*property) == driver) lines += propertyLine(*property, *fresh);
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
