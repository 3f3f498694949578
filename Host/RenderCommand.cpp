#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "Host/CommandLine.h"
#include "Host/Device.h"
#include "Host/Interrupt.h"
#include "Host/Progress.h"
#include "Host/RenderPipeline.h"

namespace qv::host {

namespace {

struct Options {
    std::string input, output, mask, duration;
    std::vector<std::string> effects;
    ClipWriterOptions writer;
    std::vector<std::string> writerOptions;
    double crf = 0;
    std::string bitRate;
    bool noAudio = false, noSubtitles = false, quiet = false, lines = false;
    OverwriteOptions overwrite;
    DeviceOptions device;
};

/// Bits per second from "4000000", "4000k" or "4M".
std::int64_t parseBitRate(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    const std::string_view unit(end);
    const double scale = unit == "k" || unit == "K" ? 1e3 : unit == "m" || unit == "M" ? 1e6 : 1;
    const double bits = value * scale;
    const bool valid =
        end != text.c_str() && (unit.empty() || scale > 1) && std::isfinite(bits) && bits >= 1000;
    if (!valid || bits > 1e12)
        fail(ExitCode::usage, "--bitrate takes bits per second, as 4M, not '{}'", text);
    return std::int64_t(bits);
}

ClipWriterOptions writerOptions(const Options& options, const CLI::App& command) {
    ClipWriterOptions result = options.writer;
    if (command.count("--crf") > 0) result.crf = options.crf;
    if (!options.bitRate.empty()) result.bitRate = parseBitRate(options.bitRate);
    result.audio = !options.noAudio;
    result.subtitles = !options.noSubtitles;
    if (options.output == "-" && result.container.empty()) result.container = "matroska";
    for (const std::string& option : options.writerOptions) {
        const std::size_t equals = option.find('=');
        if (equals == std::string::npos || equals == 0) {
            fail(ExitCode::usage, "--option takes name=value, not '{}'", option);
        }
        result.options.emplace_back(option.substr(0, equals), option.substr(equals + 1));
    }
    return result;
}

/// A frame of the clip's kind with nothing on it, for building the graph before there are pixels.
PixelBuffer blankFrame(const ClipVideoFormat& video) {
    const PixelBuffer frame = PixelBuffer::create(video.pixelFormat, video.width, video.height, video.color);
    if (!frame) fail(ExitCode::internal, "no memory for frames of {}x{}", video.width, video.height);
    for (int i = 0; i < PixelBuffer::planeCount(video.pixelFormat); ++i) {
        const PlaneLayout layout = PixelBuffer::planeLayout(video.pixelFormat, i, video.width, video.height);
        std::memset(frame.plane(i).data, 0, frame.plane(i).rowBytes * std::size_t(layout.height));
    }
    return frame;
}

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

void render(const Options& options, const CLI::App& command) {
    const std::vector<EffectChoice> choices = parseChain(options.effects);
    const ClipWriterOptions writing = writerOptions(options, command);
    checkOutput(options.output, options.overwrite);

    RenderPipeline::Parts parts;
    parts.reader = openClip(options.input, {.threads = writing.threads, .packets = true});
    const ClipInfo info = parts.reader->info();
    const double seconds = clipSeconds(options, info);
    auto mask = options.mask.empty() ? nullptr : std::make_unique<MaskSource>(options.mask);
    parts.effects = std::make_unique<ClipEffects>(choices, info, seconds, std::move(mask));
    if (info.isStillPicture) parts.timesEachFrame = pictureFrames(info, seconds);

    const MTIImage first = parts.effects->outputImage(blankFrame(info.video), 0);
    parts.size = {int(first.size().width), int(first.size().height)};
    ClipVideoFormat video = info.video;
    video.width = parts.size.width;
    video.height = parts.size.height;
    const DeferInterrupts defer;
    std::string cause;
    parts.writer = ClipWriter::create(options.output, video, writing, parts.reader->streams(), &cause);
    if (!parts.writer) fail(ExitCode::output, "{}", cause);
    if (!options.quiet) {
        for (const std::string& notice : parts.writer->notices())
            fmt::print(stderr, "qvfilter: note: {}\n", notice);
    }

    const bool deep = video.bitDepth > 8 || PixelBuffer::bitDepth(parts.writer->frameFormat()) > 8;
    parts.context =
        options.device.makeContext(deep ? MTIPixelFormat::rgba16Float : MTIPixelFormat::rgba8Unorm);
    parts.context->prepare(first);

    const auto context = parts.context;
    Progress progress(progressStyle(options.lines, options.quiet),
                      info.frameCountEstimate * parts.timesEachFrame, "frames");
    RenderPipeline(std::move(parts)).run([&](std::int64_t frames, double seconds) {
        progress.advance(frames, seconds);
    });
    progress.finish();
    checkValidation(*context);
}

}  // namespace

void addRenderCommand(CLI::App& tool) {
    CLI::App* command =
        tool.add_subcommand("render", "Renders a clip through effects; sound and the rest are kept");
    auto options = std::make_shared<Options>();
    ClipWriterOptions& writer = options->writer;
    command->add_option("-i,--input", options->input, "Video or picture file, or - for standard input")
        ->required();
    command->add_option("-e,--effect", options->effects, "CLASS:name=value:name=value; repeatable, a chain")
        ->allow_extra_args(false);
    command->add_option("-o,--output", options->output, "Video file, or - for standard output")->required();
    command->add_option("--duration", options->duration, "How long a picture is shown, seconds; 3 without");
    command->add_option("--mask", options->mask, "Picture or video that is white where the subject is");
    command->add_option("--format", writer.container,
                        "Container, as mp4; by the output's name, matroska for -");
    command->add_option("--codec", writer.codec, "Encoder, as libx264; what suits the container");
    CLI::Option* crf =
        command->add_option("--crf", options->crf, "Constant quality of the encoder; 18 with libx264");
    command->add_option("--bitrate", options->bitRate, "Bits per second instead of constant quality, as 4M")
        ->excludes(crf);
    command->add_option("--preset", writer.preset, "The encoder's speed; veryfast with libx264");
    command->add_option("--pix-fmt", writer.pixelFormat, "Stored pixel format, as yuv420p10le; the input's");
    command->add_option("--threads", writer.threads, "Threads of decoder and encoder, 0 for one per core")
        ->check(CLI::Range(0, 256));
    command
        ->add_option("--option", options->writerOptions,
                     "name=value for the encoder or container; repeatable")
        ->allow_extra_args(false);
    command->add_flag("--no-audio", options->noAudio, "Leave the sound out");
    command->add_flag("--no-subtitles", options->noSubtitles, "Leave subtitles out");
    command->add_flag("--progress", options->lines, "Progress as lines for programs, on standard error");
    command->add_flag("--quiet", options->quiet, "No progress bar and no notes");
    options->overwrite.add(*command);
    options->device.add(*command);
    command->callback([options, command] { render(*options, *command); });
}

}  // namespace qv::host
