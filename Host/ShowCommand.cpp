#include <memory>

#include "Host/ClassListing.h"
#include "Host/CommandLine.h"
#include "Host/EffectChoice.h"

namespace qv::host {

void addShowCommand(CLI::App& tool) {
    struct Options {
        bool json = false;
        std::string className;
    };
    CLI::App* command = tool.add_subcommand("show", "Tells what a class does and what can be set");
    auto options = std::make_shared<Options>();
    addJSONFlag(*command, options->json);
    command->add_option("class", options->className, "Name of the class")->required();
    command->callback([options] {
        const QVFilterClass& filterClass = findClass(options->className);
        writeStandardOutput(options->json ? dump(classToJSON(filterClass)) : classToText(filterClass));
    });
}

}  // namespace qv::host
