#include <algorithm>
#include <cmath>
#include <memory>

#include "Host/Clips/ClipSource.h"
#include "Host/Clips/EncodingOptions.h"
#include "Host/Clips/RenderPipeline.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Device.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/CommandLine/Progress.h"

namespace qv::host {

namespace {

struct Options {
    std::string input, output, mask, duration;
    std::vector<std::string> effects;
    EncodingOptions encoding;
    bool noSubtitles = false;
    OverwriteOptions overwrite;
    DeviceOptions device;
};

/// Seconds that the clip lasts, 0 when unknown; of a picture, how long it is to be shown.
double clipSeconds(const Options& options, const ClipInfo& info) {
    if (!info.isStillPicture) {
        if (!options.duration.empty())
            fail(ExitCode::usage, "--duration is for a picture, which '{}' is not", info.path);
        return info.duration;
    }
    const double seconds =
        options.duration.empty() ? kPhotoSeconds : parseTime("--duration", options.duration);
    if (seconds <= 0) fail(ExitCode::usage, "--duration is not above 0");
    return seconds;
}

/// Frames that make up those seconds of a picture.
std::int64_t pictureFrames(const ClipInfo& info, double seconds) {
    const Rational rate = info.video.averageFrameRate;
    return std::max<std::int64_t>(1, std::llround(seconds * (rate.value() > 0 ? rate.value() : 25)));
}

void render(const Options& options) {
    const std::vector<EffectChoice> choices = parseChain(options.effects);
    ClipWriterOptions writing = options.encoding.writerOptions(options.output);
    writing.subtitles = !options.noSubtitles;
    options.encoding.checkOutput(options.output, options.overwrite);

    ClipReaderOptions reading = options.encoding.inputOptions(options.input, options.mask);
    reading.packets = true;
    auto reader = openClip(options.input, reading);
    const ClipInfo info = reader->info();
    const double seconds = clipSeconds(options, info);
    auto mask = openMaskSource(options.mask, options.encoding.readerOptions(options.mask),
                               [&](const std::string& line) { options.encoding.note(line); });
    auto effects = std::make_unique<ClipEffects>(choices, info, seconds, std::move(mask));
    const std::int64_t timesEachFrame = info.isStillPicture ? pictureFrames(info, seconds) : 1;

    RenderPipeline::Parts parts;
    const MTIImage first = effects->outputImage(blankFrame(info.video), 0);
    if (effects->lacksSubject()) options.encoding.note(unknownSubject(options.input));
    parts.size = {int(first.size().width), int(first.size().height)};
    ClipVideoFormat video = info.video;
    video.width = parts.size.width;
    video.height = parts.size.height;
    const DeferInterrupts defer;
    parts.writer = options.encoding.makeWriter(options.output, video, writing, reader->streams());
    parts.context = options.device.makeContext(workingFormat(video, *parts.writer));
    parts.context->prepare(first);
    parts.source = std::make_unique<ClipSource>(std::move(reader), std::move(effects), timesEachFrame);

    const auto context = parts.context;
    Progress progress(options.encoding.progress(), info.frameCountEstimate * timesEachFrame, "frames");
    RenderPipeline(std::move(parts)).run([&](std::int64_t frames, double seconds) {
        progress.advance(frames, seconds);
    });
    progress.finish();
    checkValidation(*context);
}

}  // namespace

void addRenderCommand(CommandParser& tool) {
    const Command command =
        tool.addCommand("render", "Renders a clip through effects; sound and the rest are kept");
    auto options = std::make_shared<Options>();
    command.option("-i,--input", options->input, "Video or picture file, or - for standard input").required();
    command.option("-e,--effect", options->effects, "CLASS:name=value:name=value; repeatable, a chain");
    command.option("-o,--output", options->output, "Video file, or - for standard output").required();
    command.option("--duration", options->duration, "How long a picture is shown, seconds; 3 without");
    command.option("--mask", options->mask, kMaskHelp);
    options->encoding.add(command);
    options->encoding.addInputFormat(command);
    command.flag("--no-subtitles", options->noSubtitles, "Leave subtitles out");
    options->overwrite.add(command);
    options->device.add(command);
    command.setAction([options] { render(*options); });
}

}  // namespace qv::host
