#include <algorithm>
#include <memory>

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

void addListCommand(CommandParser& tool) {
    const Command command = tool.addCommand("list", "Lists the classes");
    auto options = std::make_shared<Options>();
    const CommandOption json = addJSONFlag(command, options->json);
    const CommandOption pattern =
        command.option("pattern", options->pattern, "Only names that match (* and ?) or contain this");
    command.option("--markdown", options->pages, "Write a page per category into this folder instead")
        .excludes(json)
        .excludes(pattern);
    options->overwrite.add(command);
    command.setAction([options] { list(*options); });
}

}  // namespace qv::host
