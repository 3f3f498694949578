#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/Listing/ClassListing.h"
#include "Host/Listing/ClassPages.h"
#include "QVFilterExtension/QVFilterRegistry.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

struct Options {
    bool json = false;
    std::string pattern = "*", search, category, kind, pages;
    OverwriteOptions overwrite;
};

/// Of the categories that there are classes in.
std::vector<std::string> categoryNames() {
    std::set<QVFilterCategory> categories;
    for (const QVFilterClass* filterClass : allFilterClasses())
        categories.insert(filterClass->categoryOrInherited());
    std::vector<std::string> names;
    for (QVFilterCategory category : categories) names.emplace_back(categoryName(category));
    return names;
}

void list(const Options& options) {
    if (!options.pages.empty()) return writeClassPages(options.pages, options.overwrite);
    std::vector<const QVFilterClass*> classes = filterClassesMatching(options.search);
    std::erase_if(classes, [&](const QVFilterClass* filterClass) {
        return !matchesPattern(filterClass->name, options.pattern) ||
               (!options.category.empty() &&
                categoryName(filterClass->categoryOrInherited()) != options.category) ||
               (!options.kind.empty() && kindName(filterClass->kindOrInherited()) != options.kind);
    });
    if (options.json) {
        Json array = Json::array();
        for (const QVFilterClass* filterClass : classes) array.push_back(classToJSON(*filterClass));
        return writeStandardOutput(dump(array));
    }
    std::size_t nameWidth = 0, titleWidth = 0;
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        nameWidth = std::max(nameWidth, filterClass->name.size());
        titleWidth = std::max(titleWidth, filterClass->title.size());
    }
    std::string table;
    for (const QVFilterClass* filterClass : classes) {
        table += fmt::format("{:<{}}  {:<{}}  {:<10}  {:<10}  {}\n", filterClass->name, nameWidth,
                             filterClass->title, titleWidth, kindName(filterClass->kindOrInherited()),
                             categoryName(filterClass->categoryOrInherited()), filterClass->help);
    }
    writeStandardOutput(table);
}

}  // namespace

void addListCommand(CommandParser& tool) {
    const Command command = tool.addCommand("list", "Lists the classes");
    auto options = std::make_shared<Options>();
    const CommandOption json = addJSONFlag(command, options->json);
    const CommandOption pattern =
        command.option("pattern", options->pattern, "Only names that match (* and ?) or contain this");
    const CommandOption search = command.option(
        "--search", options->search,
        "Only classes in whose name, title, tags, meaning or category every one of these words occurs");
    const CommandOption category =
        command.option("--category", options->category, "Only this category").oneOf(categoryNames());
    const CommandOption kind = command.option("--kind", options->kind, "Only this kind")
                                   .oneOf({"effect", "transition", "auxiliary"});
    command.option("--markdown", options->pages, "Write a page per category into this folder instead")
        .excludes(json)
        .excludes(pattern)
        .excludes(search)
        .excludes(category)
        .excludes(kind);
    options->overwrite.add(command);
    command.setAction([options] { list(*options); });
}

}  // namespace qv::host
