#include "Host/Listing/ClassPages.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <vector>

#include "Host/Clips/Timeline.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/CommandLine/SmallFiles.h"
#include "Host/Listing/ClassListing.h"
#include "Host/Listing/ClassUsage.h"
#include "Platform/Foundation/OutputFile.h"
#include "QVFilterCore/QVMTIFilter.h"
#include "QVFilterExtension/QVFilterRegistry.h"

namespace qv::host {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kIndex = "index.md";

bool isListed(const QVFilterClass& filterClass) {
    return filterClassNamed(filterClass.name) == &filterClass;
}

std::string pageName(QVFilterCategory category) {
    return std::string(categoryName(category)) + ".md";
}

std::string capitalized(std::string_view text) {
    std::string result(text);
    if (!result.empty()) result[0] = char(std::toupper(static_cast<unsigned char>(result[0])));
    return result;
}

/// A link to where a class is described: its own page, or the index for a base.
std::string linkTo(const QVFilterClass& filterClass) {
    const std::string page =
        isListed(filterClass) ? pageName(filterClass.categoryOrInherited()) : std::string(kIndex);
    std::string anchor(filterClass.name);
    std::transform(anchor.begin(), anchor.end(), anchor.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return fmt::format("[{}]({}#{})", filterClass.name, page, anchor);
}

/// Text within a table's cell.
std::string cell(std::string_view text) {
    std::string result;
    for (char c : text) {
        if (c == '|') result += '\\';
        result += c;
    }
    return result;
}

std::string code(std::string_view text) {
    return fmt::format("`{}`", text);
}

std::string variantNames(const QVProperty& property) {
    std::string text;
    for (std::string_view variant : property.variants)
        text += fmt::format("{}{}", text.empty() ? "" : ", ", code(variant));
    return text;
}

/// What a filter has, as the command line would say it.
std::string valueText(const QVProperty& property, const QVMTIFilter& filter) {
    const QVPropertyValue value = property.get(filter);
    if (const auto* index = std::get_if<std::int64_t>(&value)) {
        if (*index >= 0 && std::size_t(*index) < property.variants.size())
            return code(property.variants[std::size_t(*index)]);
    }
    if (const auto* number = std::get_if<double>(&value))
        return code(fmt::format("{}", shortestNumber(*number)));
    const std::string text = propertyText(value);
    return text.empty() ? "none" : code(text);
}

/// `filter` is nil for a base, of which there are no instances.
std::string propertyTable(const std::vector<const QVProperty*>& properties, const QVMTIFilter* filter) {
    std::string text = filter ? "| property | title | type | range | default | set by | meaning |\n"
                                "|---|---|---|---|---|---|---|\n"
                              : "| property | title | type | range | set by | meaning |\n"
                                "|---|---|---|---|---|---|\n";
    for (const QVProperty* property : properties) {
        text += fmt::format("| {} | {} | {} | {} |", code(property->name), property->displayTitle(),
                            typeName(property->type),
                            property->variants.empty() ? rangeText(*property) : variantNames(*property));
        if (filter) text += fmt::format(" {} |", valueText(*property, *filter));
        text += fmt::format(" {} | {} |\n", property->driver == QVPropertyDriver::host ? "host" : "user",
                            cell(property->help));
    }
    return text;
}

/// The record, from the class towards the root, that gives a property of this name.
const QVFilterClass& declarer(const QVFilterClass& filterClass, const QVProperty& property) {
    const QVFilterClass* record = &filterClass;
    const auto has = [&] {
        return std::any_of(record->properties.begin(), record->properties.end(),
                           [&](const QVProperty& own) { return &own == &property; });
    };
    while (record->superclass && !has()) record = record->superclass;
    return *record;
}

/// Whether the class's own table has it: what a listed class declares, and every choice between names.
bool standsInTable(const QVFilterClass& filterClass, const QVProperty& property) {
    return !property.variants.empty() || isListed(declarer(filterClass, property));
}

/// What else the bases give stands on the index; here, which it is and what a new filter has.
std::string inheritedLine(const QVFilterClass& filterClass, const QVMTIFilter& fresh) {
    std::string text;
    const QVFilterClass* previous = nullptr;
    for (const QVProperty* property : filterClass.allProperties()) {
        const QVFilterClass& base = declarer(filterClass, *property);
        if (standsInTable(filterClass, *property)) continue;
        if (previous != &base)
            text += fmt::format("{}{}: ", previous ? "; from " : "From ", linkTo(base));
        else
            text += ", ";
        text += fmt::format("{} ({})", code(property->name), valueText(*property, fresh));
        previous = &base;
    }
    return text.empty() ? text : text + ".\n\n";
}

std::string facts(const QVFilterClass& filterClass) {
    std::string text;
    const auto fact = [&text](std::string_view label, std::string_view value) {
        text += fmt::format("- {}: {}\n", label, value);
    };
    std::string inputs;
    for (const QVInput& input : filterClass.allInputs()) {
        inputs += fmt::format("{}{}{}", inputs.empty() ? "" : ", ", code(input.name),
                              input.isRequired ? "" : " (optional)");
    }
    fact("Kind", kindName(filterClass.kindOrInherited()));
    fact("Inputs", inputs);
    if (filterClass.superclass) fact("Superclass", linkTo(*filterClass.superclass));
    fact("Shader function", code(filterClass.fragmentFunctionDescriptor().name));
    if (filterClass.levels() > 0)
        fact("Levels", fmt::format("{} (`level` 0 to {})", filterClass.levels(), filterClass.levels() - 1));
    if (filterClass.videoOnly()) fact("For", "video only");
    std::string tags, ignored;
    for (std::string_view tag : filterClass.tags) tags += fmt::format("{}{}", tags.empty() ? "" : ", ", tag);
    for (const QVProperty* property : filterClass.allProperties()) {
        if (property->driver == QVPropertyDriver::user && filterClass.ignores(property->name))
            ignored += fmt::format("{}{}", ignored.empty() ? "" : ", ", code(property->name));
    }
    if (!tags.empty()) fact("Tags", tags);
    if (!ignored.empty()) fact("Changes nothing", ignored);
    return text;
}

/// A setting that shows what the class can do besides its strength; empty when its own look says it all.
std::string exampleSetting(const QVFilterClass& filterClass) {
    const std::unique_ptr<QVMTIFilter> fresh = newInstance(filterClass);
    for (const QVProperty* property : filterClass.allProperties()) {
        if (property->variants.size() < 2) continue;
        const auto standing = std::size_t(std::get<std::int64_t>(property->get(*fresh)));
        return fmt::format("{}={}", property->name,
                           property->variants[(standing + 1) % property->variants.size()]);
    }
    if (filterClass.property("effectValue")) return {};
    for (const QVProperty& property : filterClass.properties) {
        if (property.type != QVPropertyType::real || property.driver == QVPropertyDriver::host) continue;
        const double standing = std::get<double>(property.get(*fresh));
        const double end = standing < property.maximum ? property.maximum : property.minimum;
        return fmt::format("{}={}", property.name, std::round((standing + end) * 50) / 100);
    }
    return {};
}

std::string classSection(const QVFilterClass& filterClass) {
    const std::unique_ptr<QVMTIFilter> fresh = newInstance(filterClass);
    std::string text = fmt::format("## {}\n\n**{}.** {}.\n\n{}\n", filterClass.name, filterClass.title,
                                   filterClass.help, facts(filterClass));
    std::vector<const QVProperty*> own = filterClass.allProperties();
    std::erase_if(own, [&](const QVProperty* p) { return !standsInTable(filterClass, *p); });
    if (!own.empty()) text += propertyTable(own, fresh.get()) + "\n";
    text += inheritedLine(filterClass, *fresh);
    return text + fmt::format("    {}\n\n", usageCommand(filterClass, exampleSetting(filterClass)));
}

std::string categoryPage(QVFilterCategory category, const std::vector<const QVFilterClass*>& classes) {
    std::string text =
        fmt::format("# {}\n\n[All families]({})\n\n| class | title | what it does |\n|---|---|---|\n",
                    capitalized(categoryName(category)), kIndex);
    for (const QVFilterClass* filterClass : classes)
        text += fmt::format("| {} | {} | {} |\n", linkTo(*filterClass), filterClass->title,
                            cell(filterClass->help));
    text += "\n";
    for (const QVFilterClass* filterClass : classes) text += classSection(*filterClass);
    text.pop_back();
    return text;
}

using Families = std::map<QVFilterCategory, std::vector<const QVFilterClass*>>;

/// Superclasses that no host creates, the root first.
std::vector<const QVFilterClass*> basesOf(const Families& families) {
    std::map<std::string, const QVFilterClass*> byLineage;
    for (const auto& [category, classes] : families) {
        for (const QVFilterClass* filterClass : classes) {
            for (const auto* base = filterClass->superclass; base; base = base->superclass) {
                if (isListed(*base)) continue;
                std::string lineage;
                for (const auto* record = base; record; record = record->superclass)
                    lineage = fmt::format("{}/{}", record->name, lineage);
                byLineage.emplace(lineage, base);
            }
        }
    }
    std::vector<const QVFilterClass*> bases;
    for (const auto& [lineage, base] : byLineage) bases.push_back(base);
    return bases;
}

std::string baseSection(const QVFilterClass& base) {
    std::string text = fmt::format("### {}\n\n", base.name);
    text += fmt::format("{}.", base.help);
    if (base.superclass) text += fmt::format(" Superclass: {}.", linkTo(*base.superclass));
    text += "\n\n";
    std::vector<const QVProperty*> own;
    for (const QVProperty& property : base.properties) own.push_back(&property);
    return own.empty() ? text : text + propertyTable(own, nullptr) + "\n";
}

std::string indexPage(const Families& families) {
    std::string text =
        "# The classes\n\n"
        "Written by `qvfilter list --markdown` from the class objects; not edited by hand. `qvfilter show "
        "CLASS` prints the same.\n\n"
        "| family | classes |\n|---|---|\n";
    for (const auto& [category, classes] : families) {
        std::string links;
        for (const QVFilterClass* filterClass : classes)
            links += (links.empty() ? "" : ", ") + linkTo(*filterClass);
        text += fmt::format("| [{}]({}) | {} |\n", capitalized(categoryName(category)), pageName(category),
                            links);
    }
    text +=
        "\n## Bases\n\nWhat a class inherits. A host that follows a timeline sets the times and the progress "
        "once per "
        "frame; `qvfilter` does.\n\n";
    for (const QVFilterClass* base : basesOf(families)) text += baseSection(*base);
    text.pop_back();
    return text;
}

}  // namespace

void writeClassPages(const std::string& directory, const OverwriteOptions& overwrite) {
    Families families;
    for (const QVFilterClass* filterClass : allFilterClasses())
        families[filterClass->categoryOrInherited()].push_back(filterClass);
    std::map<std::string, std::string> pages;
    for (const auto& [category, classes] : families)
        pages[pageName(category)] = categoryPage(category, classes);
    pages[std::string(kIndex)] = indexPage(families);

    makeFolder(directory);
    std::erase_if(
        pages, [&](const auto& page) { return readFile(fs::path(directory) / page.first) == page.second; });
    for (const auto& [name, text] : pages) checkOutput(fs::path(directory) / name, overwrite);
    const DeferInterrupts defer;  // so short that a signal may wait for it
    for (const auto& [name, text] : pages) writeFile(fs::path(directory) / name, text);
}

}  // namespace qv::host
