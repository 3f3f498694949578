#include <memory>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/Listing/CompletionScript.h"

namespace qv::host {

void addCompletionCommand(CommandParser& tool) {
    const Command command = tool.addCommand("completion", "Prints a script that completes command lines");
    auto shell = std::make_shared<Shell>();
    command.choice("shell", *shell, {{"bash", Shell::bash}, {"zsh", Shell::zsh}}, "The shell to complete in")
        .required();
    command.setAction([shell, &tool] { writeStandardOutput(completionScript(*shell, tool.commands())); });
}

}  // namespace qv::host
