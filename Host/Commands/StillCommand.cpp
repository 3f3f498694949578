#include <memory>

#include "Host/Clips/PictureFile.h"
#include "Host/CommandLine/ClipReading.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/Edit/EditOptions.h"
#include "Host/Edit/EditPreview.h"

namespace qv::host {

namespace {

struct Options {
    ProjectClip clip;
    std::string output, time;
    std::vector<std::string> effects;
    PartOptions part;
    FrameOptions frames{"stretch"};
    ClipReading reading;
    OverwriteOptions overwrite;
    DeviceOptions device;
};

/// Seconds since the part's first frame.
double timeOf(const Options& options, const EditTimeline& timeline) {
    if (options.time.empty()) return 0;
    const MediaTime time = parseMediaTime("--time", options.time);
    const TimelineClip& entry = timeline.clips()[0];
    const double seconds = time.seconds(timeline.rate());
    if (entry.isPicture) return seconds;
    if (seconds < 0) fail(ExitCode::usage, "--time of a clip is not negative");
    if (seconds > entry.length + kTimeTolerance) {
        fail(ExitCode::input, "'{}' ends at {:.3f} s, before {} s", entry.clip.path, entry.length, seconds);
    }
    return seconds;
}

void still(Options& options) {
    Project project;
    options.part.apply(options.clip);
    options.clip.effects = parseEffects(options.effects);
    options.frames.apply(project);
    project.clips = {options.clip};
    const PictureType type = pictureTypeFor(options.output);
    checkOutput(options.output, options.overwrite);

    const auto reading = [&](const std::string& path) { return options.reading.optionsFor(path); };
    const double photoSeconds = options.time.empty() ? 0 : parseMediaTime("--time", options.time).seconds(0);
    EditPreview preview(project, reading, options.device, writeNote, photoSeconds);
    std::string cause;
    const MTIImage image = preview.imageAt(timeOf(options, preview.timeline()));
    const Bitmap bitmap = preview.context().renderToBitmap(image, &cause);
    if (!bitmap) fail(ExitCode::device, "{}", cause);
    writePicture(bitmap, options.output, type);
    checkValidation(preview.context());
}

}  // namespace

void addStillCommand(CommandParser& tool) {
    const Command command =
        tool.addCommand("still", "Renders a picture, or one moment of a clip, through effects");
    auto options = std::make_shared<Options>();
    command
        .option("-i,--input", options->clip.path, "PNG, JPEG or video file; - is a picture on standard input")
        .required();
    command.option("-e,--effect", options->effects, kEffectHelp);
    command.option("-o,--output", options->output, "PNG or JPEG file, or - for PNG on standard output")
        .required();
    command.option("--time", options->time,
                   "Moment of the part, and the effects' time: seconds, or frames as 12f");
    options->part.add(command, "How long the part is, which is what effects see of the clip");
    options->frames.add(command, false);
    options->reading.add(command);
    command.option("--mask", options->clip.mask, kMaskHelp);
    options->overwrite.add(command);
    options->device.add(command);
    command.setAction([options] { still(*options); });
}

}  // namespace qv::host
