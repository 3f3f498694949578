#include <memory>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/Edit/EditExport.h"
#include "Host/Edit/EditOptions.h"

namespace qv::host {

namespace {

struct Options {
    ProjectClip clip;
    std::vector<std::string> effects;
    PartOptions part;
    FrameOptions frames;
    EditOutput output;
    bool noSubtitles = false;
};

void render(Options& options) {
    Project project;
    options.part.apply(options.clip);
    options.clip.effects = parseEffects(options.effects);
    options.frames.apply(project);
    project.clips = {options.clip};
    options.output.subtitles = !options.noSubtitles;
    exportProject(project, options.output);
}

}  // namespace

void addRenderCommand(CommandParser& tool) {
    const Command command =
        tool.addCommand("render", "Renders a clip through effects; sound and the rest are kept");
    auto options = std::make_shared<Options>();
    command.option("-i,--input", options->clip.path, "Video or picture file, or - for standard input")
        .required();
    command.option("-e,--effect", options->effects, kEffectHelp);
    command.option("-o,--output", options->output.path, "Video file, or - for standard output").required();
    options->part.add(command, "How long the part is; of a picture, how long it is shown, 3 without");
    options->frames.add(command);
    command.option("--mask", options->clip.mask, kMaskHelp);
    options->output.encoding.add(command);
    options->output.encoding.addInputFormat(command);
    command.flag("--no-subtitles", options->noSubtitles, "Leave subtitles out");
    options->output.overwrite.add(command);
    options->output.device.add(command);
    command.setAction([options] { render(*options); });
}

}  // namespace qv::host
