#include <algorithm>
#include <memory>

#include "Host/ClassListing.h"
#include "Host/ClassPages.h"
#include "Host/CommandLine.h"
#include "QVFilterExtension/QVFilterRegistry.h"

namespace qv::host {

namespace {

struct Options {
    bool json = false;
    std::string pattern = "*", pages;
    OverwriteOptions overwrite;
};

void list(const Options& options) {
    if (!options.pages.empty()) return writeClassPages(options.pages, options.overwrite);
    Json array = Json::array();
    std::string table;
    std::size_t nameWidth = 0;
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        nameWidth = std::max(nameWidth, filterClass->name.size());
    }
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        if (!matchesPattern(filterClass->name, options.pattern)) continue;
        if (options.json) {
            array.push_back(classToJSON(*filterClass));
        } else {
            table += fmt::format("{:<{}}  {:<10}  {:<10}  {}\n", filterClass->name, nameWidth,
                                 kindName(filterClass->kindOrInherited()),
                                 categoryName(filterClass->categoryOrInherited()), filterClass->help);
        }
    }
    writeStandardOutput(options.json ? dump(array) : table);
}

}  // namespace

void addListCommand(CLI::App& tool) {
    CLI::App* command = tool.add_subcommand("list", "Lists the classes");
    auto options = std::make_shared<Options>();
    CLI::Option* json = addJSONFlag(*command, options->json);
    CLI::Option* pattern =
        command->add_option("pattern", options->pattern, "Only names that match (* and ?) or contain this");
    command->add_option("--markdown", options->pages, "Write a page per category into this folder instead")
        ->excludes(json)
        ->excludes(pattern);
    options->overwrite.add(*command);
    command->callback([options] { list(*options); });
}

}  // namespace qv::host
