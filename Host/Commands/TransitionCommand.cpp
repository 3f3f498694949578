#include <memory>
#include <optional>

#include "Host/Clips/PictureFile.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/Edit/EditExport.h"
#include "Host/Edit/EditOptions.h"
#include "Host/Edit/EditPreview.h"
#include "Host/Sheets/SheetDrawing.h"

namespace qv::host {

namespace {

struct Options {
    std::string transition, duration = "1", stillSeconds;
    InputList inputs;
    FrameOptions frames;
    std::optional<double> at;
    int strip = 0;
    EditOutput output;
};

MediaTime positive(const std::string& option, const std::string& text) {
    const MediaTime time = parseMediaTime(option, text);
    if (time.value <= 0) fail(ExitCode::usage, "{} is above 0, not '{}'", option, text);
    return time;
}

Project projectOf(const Options& options, const Command& command) {
    if (options.inputs.size() != 2) {
        fail(ExitCode::usage, "a transition has two inputs, the outgoing and the incoming one, not {}",
             options.inputs.size());
    }
    Project project;
    options.frames.apply(project);
    project.clips = options.inputs.clips(command);
    project.clips[1].transition = {parseEffect(options.transition, ClassUse::transition),
                                   positive("--duration", options.duration)};
    if (options.stillSeconds.empty()) return project;
    for (ProjectClip& clip : project.clips) {
        if (isPictureFile(clip.path)) clip.duration = positive("--still-seconds", options.stillSeconds);
    }
    return project;
}

Bitmap momentOf(EditPreview& preview, double progress) {
    std::string cause;
    const Bitmap bitmap = preview.context().renderToBitmap(preview.transitionAt(1, progress), &cause);
    if (!bitmap) fail(ExitCode::device, "{}", cause);
    return bitmap;
}

Bitmap stripOf(EditPreview& preview, int count) {
    std::vector<StripFrame> frames;
    for (int i = 0; i < count; ++i) {
        const double progress = double(i) / (count - 1);
        frames.push_back({progress, momentOf(preview, progress)});
    }
    const Bitmap strip = drawStrip(frames, preview.timeline().frame().size);
    if (!strip) fail(ExitCode::usage, "{} frames side by side are too wide; give a smaller --size", count);
    return strip;
}

void drawPicture(const Project& project, const Options& options) {
    const EditOutput& output = options.output;
    const PictureType type = pictureTypeFor(output.path);
    checkOutput(output.path, output.overwrite);
    EditPreview preview(
        project, [&](const std::string& path) { return output.encoding.readerOptions(path); }, output.device,
        [&](const std::string& line) { output.encoding.note(line); });
    const Bitmap bitmap = options.at ? momentOf(preview, *options.at) : stripOf(preview, options.strip);
    writePicture(bitmap, output.path, type);
    checkValidation(preview.context());
}

void transition(const Options& options, const Command& command) {
    const Project project = projectOf(options, command);
    const bool isPicture = options.at || options.strip > 0;
    isPicture ? drawPicture(project, options) : exportProject(project, options.output);
}

}  // namespace

void addTransitionCommand(CommandParser& tool) {
    const Command command = tool.addCommand("transition", "Leads from one clip to another");
    auto options = std::make_shared<Options>();
    command.option("transition", options->transition, "CLASS, or CLASS:name=value:name=keys").required();
    options->inputs.add(command);
    command
        .option("-o,--output", options->output.path,
                "Video file; with --at and --strip PNG or JPEG file; - for standard output")
        .required();
    const CommandOption at =
        command.option("--at", options->at, "One moment as a picture: progress, 0 to 1").range(0.0, 1.0);
    command.option("--strip", options->strip, "Moments side by side as a picture, both ends included")
        .range(2, 1000)
        .excludes(at);
    command.option("--duration", options->duration, "Of the transition, seconds or frames").showDefault();
    options->frames.add(command);
    command.option("--still-seconds", options->stillSeconds, "How long a picture is shown; 3 without");
    options->output.encoding.add(command);
    options->output.overwrite.add(command);
    options->output.device.add(command);
    command.setAction([options, command] { transition(*options, command); });
}

}  // namespace qv::host
