#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Host/ClassListing.h"
#include "Host/ClassPages.h"
#include "Host/CommandLine.h"
#include "QVFilterExtension/QVFilterRegistry.h"

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

void addListCommand(CLI::App& tool) {
    CLI::App* command = tool.add_subcommand("list", "Lists the classes");
    auto options = std::make_shared<Options>();
    CLI::Option* json = addJSONFlag(*command, options->json);
    CLI::Option* pattern =
        command->add_option("pattern", options->pattern, "Only names that match (* and ?) or contain this");
    CLI::Option* search = command->add_option(
        "--search", options->search,
        "Only classes in whose name, title, tags, meaning or category every one of these words occurs");
    CLI::Option* category = command->add_option("--category", options->category, "Only this category")
                                ->check(CLI::IsMember(categoryNames()));
    CLI::Option* kind = command->add_option("--kind", options->kind, "Only this kind")
                            ->check(CLI::IsMember({"effect", "transition", "auxiliary"}));
    command->add_option("--markdown", options->pages, "Write a page per category into this folder instead")
        ->excludes(json)
        ->excludes(pattern)
        ->excludes(search)
        ->excludes(category)
        ->excludes(kind);
    options->overwrite.add(*command);
    command->callback([options] { list(*options); });
}

}  // namespace qv::host
