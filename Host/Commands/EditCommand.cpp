#include <algorithm>
#include <memory>
#include <set>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/SmallFiles.h"
#include "Host/Edit/EditRequest.h"
#include "Host/Edit/ProjectFile.h"
#include "Host/Edit/TimelineFile.h"
#include "Host/Farm/FarmPartRender.h"
#include "Host/Farm/FarmSplit.h"

namespace qv::host {

namespace {

struct Options {
    EditRequest request;
    bool print = false;
    std::string otio, plan;
    std::optional<int> parts, span;
};

void writeTimeline(const Project& project, const Options& options) {
    const EditOutput& output = options.request.output;
    checkOutput(options.otio, output.overwrite);
    Mistakes mistakes;
    const auto reading = [&](const std::string& path) { return output.encoding.readerOptions(path); };
    const EditTimeline timeline(project, reading, EditPurpose::pictures, mistakes);
    mistakes.check();
    const std::string text = timelineText(timeline);
    options.otio == "-" ? writeStandardOutput(text) : writeFile(options.otio, text);
}

/// What each machine may choose for itself.
const std::set<std::string> kMachineOptions{"--threads",  "--device",   "--texture-memory",
                                            "--validate", "--progress", "--json-progress",
                                            "--quiet",    "--yes",      "--no"};
/// What says that there are parts, and where.
const std::set<std::string> kFarmOptions{"--output", "--split", "--span", "--plan"};

/// The options that were given of the two kinds: those that parts share, or those of this machine.
std::vector<std::string> wordsOf(const Command& command, bool ofMachine) {
    std::vector<std::string> chosen;
    for (const auto& [name, words] : command.words()) {
        if (!kFarmOptions.contains(name) && kMachineOptions.contains(name) == ofMachine)
            chosen.insert(chosen.end(), words.begin(), words.end());
    }
    return chosen;
}

void split(const Options& options, const Command& command) {
    const std::filesystem::path folder(options.request.output.path);
    makeFolder(folder);
    const FarmPlan plan = makePlan({options.request, wordsOf(command, false), options.parts.value(), folder});
    const std::filesystem::path file = planPath(folder);
    const std::string text = planText(plan);
    // Parts that are there already go on to fit a plan that is the same.
    if (readFile(file) != text) {
        checkOutput(file.string(), options.request.output.overwrite);
        writeFile(file, text);
    }
    const int sounds = plan.soundPart() ? 1 : 0;
    writeStandardOutput(fmt::format("{} parts: {} of pictures, {} of sound\n", plan.parts.size(),
                                    int(plan.parts.size()) - sounds, sounds));
}

void renderSpan(const Options& options, const Command& command) {
    const std::vector<std::string> others = wordsOf(command, false);
    if (!others.empty())
        fail(ExitCode::usage, "{} is not for a part: the plan says how it is made",
             others[0].substr(0, others[0].find('=')));
    renderPart({options.request.file, options.span.value(), options.request.output.path, options.plan,
                wordsOf(command, true)});
}

void edit(const Options& options, const Command& command) {
    const EditOutput& output = options.request.output;
    if (output.path.empty() && options.otio.empty() && !options.print)
        fail(ExitCode::usage, "--output is required, or --print or --write-otio; see qvfilter --help");
    if (options.parts) return split(options, command);
    if (options.span) return renderSpan(options, command);
    const Project project = options.request.project();
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
    options->request.add(command);
    const CommandOption output =
        command.option("-o,--output", options->request.output.path,
                       "Video file, or - for standard output; with --split the plan's folder");
    const CommandOption otio =
        command
            .option("--write-otio", options->otio,
                    "Write the project as OpenTimelineIO's JSON, and render nothing; - is standard output")
            .excludes(output);
    command.flag("--print", options->print, "Print the project with everything filled in, and render nothing")
        .excludes(output)
        .excludes(otio);
    const CommandOption split =
        command
            .option("--split", options->parts,
                    "Plan so many parts for as many machines, in a folder, and render nothing")
            .range(1, 100'000)
            .needs(output);
    const CommandOption span =
        command.option("--span", options->span, "Render the part of this number, as the plan beside it says")
            .needs(output)
            .excludes(split);
    command.option("--plan", options->plan, "The plan of --span; plan.json beside the output without")
        .needs(span);
    command.setAction([options, command] { edit(*options, command); });
}

}  // namespace qv::host
