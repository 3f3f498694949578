#include <memory>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/Edit/EditExport.h"
#include "Host/Edit/EditOptions.h"
#include "Host/Edit/ProjectFile.h"

namespace qv::host {

namespace {

struct Options {
    std::string file;
    std::vector<std::string> values;
    FrameOptions frames;
    bool print = false;
    EditOutput output;
};

void edit(const Options& options) {
    if (options.output.path.empty() && !options.print)
        fail(ExitCode::usage, "--output is required, or --print; see qvfilter --help");
    Mistakes mistakes;
    const std::string file = options.file == "-" ? kStandardInput : options.file;
    Project project = readProject(file, parseValues(options.values), mistakes);
    mistakes.check();
    options.frames.apply(project);
    options.print ? writeStandardOutput(projectText(project)) : exportProject(project, options.output);
}

}  // namespace

void addEditCommand(CommandParser& tool) {
    const Command command = tool.addCommand(
        "edit", "Renders a project: clips with transitions, effects and sound, as a file tells");
    auto options = std::make_shared<Options>();
    command
        .option("file", options->file,
                "Project, JSON as Docs/edit.schema.json describes it; - is standard input")
        .required();
    const CommandOption output =
        command.option("-o,--output", options->output.path, "Video file, or - for standard output");
    command.option("--set", options->values, "name=value of a ${name} in the project; repeatable");
    command.flag("--print", options->print, "Print the project with everything filled in, and render nothing")
        .excludes(output);
    options->frames.add(command);
    options->output.encoding.add(command);
    options->output.overwrite.add(command);
    options->output.device.add(command);
    command.setAction([options] { edit(*options); });
}

}  // namespace qv::host
