#include "Host/Listing/KdenliveFiles.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include "Bindings/Plugin/PluginClass.h"
#include "Host/CommandLine/Failure.h"
#include "Host/Listing/ClassListing.h"
#include "QVFilterCore/QVMTIFilter.h"
#include "QVFilterExtension/QVFilterRegistry.h"

namespace qv::host {

namespace {

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '"')
            result += "&quot;";
        else
            result += c;
    }
    return result;
}

/// How the editor shows numbers of a unit: multiplied, with a suffix.
struct Display {
    double factor = 1;
    std::string_view suffix = "";
};

Display displayOf(QVUnit unit) {
    switch (unit) {
        case QVUnit::fraction:
        case QVUnit::frameSides:
            return {100, " %"};
        case QVUnit::seconds:
            return {1, " s"};
        case QVUnit::pixels:
            return {1, " px"};
        case QVUnit::pixels1080:
            return {1, " px at 1080"};
        case QVUnit::radians:
            return {180 / std::numbers::pi, "°"};
        case QVUnit::turns:
            return {360, "°"};
        case QVUnit::percent:
            return {1, " %"};
        case QVUnit::stops:
            return {1, " EV"};
        default:
            return {};
    }
}

/// How many digits after the point a control needs to show the value.
int decimals(double value) {
    constexpr int kMost = 3;
    int digits = 0;
    const auto isShown = [&] {
        const double scaled = value * std::pow(10, digits);
        return std::abs(scaled - std::round(scaled)) < 1e-4;
    };
    while (digits < kMost && !isShown()) ++digits;
    return digits;
}

std::string attribute(std::string_view name, const auto& value) {
    return fmt::format(" {}=\"{}\"", name, escaped(fmt::format("{}", value)));
}

/// A slider with keyframes. The default is the property's own, all else as it is shown.
std::string slider(const QVProperty& property, const std::string& initial) {
    const Display display = displayOf(property.unit);
    const auto shown = [&](double value) { return fmt::format("{:.9g}", value * display.factor); };
    std::string text = attribute("default", initial) + attribute("min", shown(property.minimum)) +
                       attribute("max", shown(property.maximum)) +
                       attribute("decimals", std::max(decimals(property.controlStep() * display.factor),
                                                      decimals(std::stod(initial) * display.factor)));
    if (display.factor != 1) text += attribute("factor", fmt::format("{:.15g}", display.factor));
    if (!display.suffix.empty()) text += attribute("suffix", display.suffix);
    return text;
}

/// Type and facts of a parameter, and the elements within it.
struct Control {
    std::string_view type;
    std::string attributes, elements = {};
};

Control controlOf(const QVProperty& property, const QVPropertyValue& value) {
    const std::string initial = propertyText(value);
    if (!property.variants.empty()) {
        const std::string_view standing = property.variants[std::size_t(std::get<std::int64_t>(value))];
        return {"list",
                attribute("default", standing) +
                    attribute("paramlist", fmt::format("{}", fmt::join(property.variants, ";"))),
                fmt::format("        <paramlistdisplay>{}</paramlistdisplay>\n",
                            escaped(fmt::format("{}", fmt::join(property.variants, ","))))};
    }
    if (isAnimated(property)) return {"animated", slider(property, initial)};
    if (property.type == QVPropertyType::boolean)
        return {"bool", attribute("default", int(std::get<bool>(value)))};
    if (property.type == QVPropertyType::color || property.type == QVPropertyType::colors) {
        // None are the class's own, which stay until the user chooses one.
        const auto& colors = std::get<std::vector<UIColor>>(value);
        return {"color", attribute("default", colors.empty() ? "" : colors.front().hex())};
    }
    return {"keywords", attribute("default", initial)};  // a line of text
}

std::string parameter(const QVProperty& property, const QVMTIFilter& fresh) {
    const Control control = controlOf(property, property.get(fresh));
    return fmt::format(
        "    <parameter{}{}{}>\n        <name>{}</name>\n        <comment>{}</comment>\n{}"
        "    </parameter>\n",
        attribute("type", control.type), attribute("name", property.name), control.attributes,
        escaped(property.displayTitle()), escaped(property.help), control.elements);
}

std::string description(const QVFilterClass& filterClass, MLTServiceKind kind) {
    const bool isEffect = kind == MLTServiceKind::filter;
    const std::string_view element = isEffect ? "effect" : "transition";
    const std::string name = serviceName(filterClass);
    std::string text = fmt::format("<?xml version=\"1.0\"?>\n<!DOCTYPE kpartgui>\n<{}{}{}{}>\n", element,
                                   attribute("tag", name), attribute("id", name),
                                   // From one clip to the next, on one track too.
                                   filterClass.isTransition() ? attribute("type", "short") : "");
    text +=
        fmt::format("    <name>{}</name>\n    <description>{}</description>\n    <author>{}</author>\n",
                    escaped(serviceTitle(filterClass, kind)), escaped(filterClass.help), "QVFilterExtension");
    const auto fresh = newInstance(filterClass);
    for (const QVProperty* property : filterClass.allProperties()) {
        if (isOffered(filterClass, *property)) text += parameter(*property, *fresh);
    }
    return text + fmt::format("</{}>\n", element);
}

}  // namespace

std::string kdenliveEffect(const QVFilterClass& filterClass) {
    return description(filterClass, MLTServiceKind::filter);
}

std::string kdenliveComposition(const QVFilterClass& filterClass) {
    return description(filterClass, MLTServiceKind::transition);
}

std::string kdenliveGroups(std::string_view groups) {
    const std::size_t end = groups.rfind("</data>");
    if (end == std::string_view::npos) return {};
    std::map<QVFilterCategory, std::vector<std::string>> effects;
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        if (isService(*filterClass, MLTServiceKind::filter))
            effects[filterClass->categoryOrInherited()].push_back(serviceName(*filterClass));
    }
    std::string text(groups.substr(0, end));
    for (const auto& [category, names] : effects) {
        text += fmt::format("<group{}><text>QV {}</text></group>\n",
                            attribute("list", fmt::format("{}", fmt::join(names, ","))),
                            escaped(categoryName(category)));
    }
    return text.append(groups.substr(end));
}

std::map<std::filesystem::path, std::string> kdenliveFiles() {
    std::map<std::filesystem::path, std::string> files;
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        const std::string name = std::string(filterClass->name) + ".xml";
        if (isService(*filterClass, MLTServiceKind::filter))
            files[std::filesystem::path("effects") / name] = kdenliveEffect(*filterClass);
        if (isService(*filterClass, MLTServiceKind::transition))
            files[std::filesystem::path("transitions") / name] = kdenliveComposition(*filterClass);
    }
    return files;
}

}  // namespace qv::host
