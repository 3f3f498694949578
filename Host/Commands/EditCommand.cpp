#include <memory>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/SmallFiles.h"
#include "Host/Edit/EditExport.h"
#include "Host/Edit/EditOptions.h"

#include "Host/Edit/TimelineFile.h"

namespace qv::host {

namespace {

struct Options {
    std::string file;
    std::vector<std::string> values;
    FrameOptions frames;
    bool print = false;
    std::string otio;
    EditOutput output;
};

void writeTimeline(const Project& project, const Options& options) {
    checkOutput(options.otio, options.output.overwrite);
    Mistakes mistakes;
    const auto reading = [&](const std::string& path) { return options.output.encoding.readerOptions(path); };
    const EditTimeline timeline(project, reading, EditPurpose::pictures, mistakes);
    mistakes.check();
    const std::string text = timelineText(timeline);
    options.otio == "-" ? writeStandardOutput(text) : writeFile(options.otio, text);
}

void edit(const Options& options) {
    const EditOutput& output = options.output;
    if (output.path.empty() && options.otio.empty() && !options.print)
        fail(ExitCode::usage, "--output is required, or --print or --write-otio; see qvfilter --help");
    const std::string file = options.file == "-" ? kStandardInput : options.file;
    const auto note = [&](const std::string& line) { output.encoding.note(line); };
    Mistakes mistakes;
    Project project = parseProject(file, readDocumentText(file), parseValues(options.values), mistakes, note);
    mistakes.check();
    options.frames.apply(project);
    if (options.print) {
        writeStandardOutput(projectText(project));
    } else if (!options.otio.empty()) {
        writeTimeline(project, options);
    } else {
        exportProject(project, output);
    }
}

}  // namespace

void addEditCommand(CommandParser& tool) {
    const Command command = tool.addCommand(
        "edit", "Renders a project: clips with transitions, effects and sound, as a file tells");
    auto options = std::make_shared<Options>();
    command
        .option("file", options->file,
                "Project, JSON as Docs/edit.schema.json describes it, or .otio; - is standard input")
        .required();
    const CommandOption output =
        command.option("-o,--output", options->output.path, "Video file, or - for standard output");
    command.option("--set", options->values, "name=value of a ${name} in the project; repeatable");
    const CommandOption otio =
        command
            .option("--write-otio", options->otio,
                    "Write the project as OpenTimelineIO's JSON, and render nothing; - is standard output")
            .excludes(output);
    command.flag("--print", options->print, "Print the project with everything filled in, and render nothing")
        .excludes(output)
        .excludes(otio);
    options->frames.add(command);
    options->output.encoding.add(command);
    options->output.overwrite.add(command);
    options->output.device.add(command);
    command.setAction([options] { edit(*options); });
}

}  // namespace qv::host
