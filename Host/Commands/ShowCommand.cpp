#include <memory>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/EffectChoice.h"
#include "Host/Listing/ClassListing.h"

#include <nlohmann/json.hpp>

namespace qv::host {

void addShowCommand(CommandParser& tool) {
    struct Options {
        bool json = false;
        std::string className;
    };
    const Command command = tool.addCommand("show", "Tells what a class does and what can be set");
    auto options = std::make_shared<Options>();
    addJSONFlag(command, options->json);
    command.option("class", options->className, "Name of the class").required();
    command.setAction([options] {
        const QVFilterClass& filterClass = findClass(options->className);
        writeStandardOutput(options->json ? dump(classToJSON(filterClass)) : classToText(filterClass));
    });
}

}  // namespace qv::host
