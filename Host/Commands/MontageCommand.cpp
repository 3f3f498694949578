#include <memory>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/Edit/EditExport.h"
#include "Host/Edit/EditOptions.h"
#include "Host/Edit/Montage.h"
#include "Host/Edit/ProjectFile.h"

namespace qv::host {

namespace {

struct Options {
    MontageChoice montage;
    std::string each = "2.5", overlap = "0.6", music, musicGain = "1";
    int seed = 1;
    std::vector<std::string> effects;
    FrameOptions frames;
    bool print = false, mute = false;
    EditOutput output;
};

/// Music ends softly.
constexpr double kFadeOutSeconds = 2;

Project projectOf(Options& options) {
    MontageChoice& montage = options.montage;
    montage.each = parseTime("--each", options.each);
    if (montage.each <= 0) fail(ExitCode::usage, "--each is above 0, not '{}'", options.each);
    montage.overlap = parseGivenTime("--overlap", options.overlap).value();
    montage.seed = std::uint32_t(options.seed);
    Project project;
    options.frames.apply(project);
    project.effects = parseEffects(options.effects);
    project.clipSound = !options.mute;
    if (!options.music.empty()) {
        project.sound = ProjectSound{.path = options.music,
                                     .gain = parseGain("--music-gain", options.musicGain),
                                     .fadeOut = {kFadeOutSeconds}};
    }
    project.clips = montageClips(montage);
    return project;
}

void montage(Options& options) {
    if (options.output.path.empty() && !options.print)
        fail(ExitCode::usage, "--output is required, or --print; see qvfilter --help");
    const Project project = projectOf(options);
    options.print ? writeStandardOutput(projectText(project)) : exportProject(project, options.output);
}

}  // namespace

void addMontageCommand(CommandParser& tool) {
    const Command command = tool.addCommand(
        "montage", "Renders clips and pictures one after another, with transitions between them");
    auto options = std::make_shared<Options>();
    MontageChoice& choice = options->montage;
    command.option("files", choice.paths, "Video and picture files").required();
    const CommandOption output =
        command.option("-o,--output", options->output.path, "Video file, or - for standard output");
    command.option("--each", options->each, "How long each is seen; a shorter clip is seen whole")
        .showDefault();
    command.option("--transitions", choice.transitions,
                   "Pattern of classes, as 'QVSmooth*', repeatable; all without");
    command.option("--overlap", options->overlap, "Of the transitions; 0 for cuts").showDefault();
    command.option("--seed", options->seed, "Another number is another choice of transitions").showDefault();
    command.option("-e,--effect", options->effects, kEffectHelp);
    const CommandOption music =
        command.option("--music", options->music, "File whose sound lies under everything");
    command.option("--music-gain", options->musicGain, "Factor, or as -6dB").needs(music).showDefault();
    command.flag("--mute", options->mute, "Leave the clips' own sound out");
    command.flag("--print", options->print, "Print the project that this is, and render nothing")
        .excludes(output);
    options->frames.add(command);
    options->output.encoding.add(command);
    options->output.overwrite.add(command);
    options->output.device.add(command);
    command.setAction([options] { montage(*options); });
}

}  // namespace qv::host
