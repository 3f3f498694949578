#include <algorithm>
#include <memory>

#include "Host/Clips/Clip.h"
#include "Host/Clips/MaskSource.h"
#include "Host/Clips/PictureFile.h"
#include "Host/Clips/Timeline.h"
#include "Host/CommandLine/ClipReading.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Device.h"

namespace qv::host {

namespace {

struct Options {
    std::string input, output, size, time, mask;
    std::vector<std::string> effects;
    ClipReading reading;
    OverwriteOptions overwrite;
    DeviceOptions device;
};

/// The picture that the effects work on, and where it lies on its clip.
struct Moment {
    MTIImage image;
    FramePixels pixels;
    ClipPosition position;
};

Moment momentOfPicture(const Options& options) {
    const Bitmap bitmap = readPicture(options.input);
    Moment moment{MTIImage::imageWithBitmap(bitmap)};
    moment.pixels.picture = bitmap;
    moment.position = {.time = options.time.empty() ? 0.0 : parseTime("--time", options.time),
                       .startTime = 0.0,
                       .endTime = kPhotoSeconds,
                       .isPhoto = true};
    return moment;
}

Moment momentOfClip(const Options& options) {
    const double time = options.time.empty() ? 0.0 : parseTime("--time", options.time);
    if (time < 0) fail(ExitCode::usage, "--time of a clip is not negative");
    const auto clip = openClip(options.input, options.reading.optionsFor(options.input));
    const ClipInfo& info = clip->info();
    const ClipMoment shown = momentAt(*clip, time);
    const int rotation = info.video.rotation;
    Moment moment{turned(MTIImage::imageWithPixelBuffer(shown.frame.pixels), rotation),
                  {.pixels = shown.frame.pixels, .rotation = rotation}};
    const double length = info.isStillPicture ? kPhotoSeconds : info.duration;
    moment.position = {.time = shown.seconds, .isPhoto = info.isStillPicture};
    if (length > 0) {
        moment.position.startTime = 0;
        moment.position.endTime = length;
    }
    return moment;
}

void still(const Options& options) {
    const std::vector<EffectChoice> choices = parseChain(options.effects);
    const PictureType type = pictureTypeFor(options.output);
    checkOutput(options.output, options.overwrite);

    const bool isPicture = options.input == "-" || isPictureFile(options.input);
    Moment moment = isPicture ? momentOfPicture(options) : momentOfClip(options);
    if (!options.size.empty()) {
        const PixelSize size = parseSize(options.size);
        moment.image = moment.image.resize({double(size.width), double(size.height)});
    }
    FilterInputs inputs;
    inputs.first = moment.image;
    inputs.originalSize = moment.image.size();
    const auto mask = openMaskSource(options.mask, options.reading.optionsFor(options.mask), writeNote);
    EffectChain chain(choices, moment.position);
    if (chain.takesMask()) inputs.mask = mask->maskOf(moment.pixels, *moment.position.time);

    const auto context = options.device.makeContext();
    const MTIImage image = chain.outputImage(inputs);
    if (chain.takesMask() && !inputs.mask) writeNote(unknownSubject(options.input));
    std::string cause;
    const Bitmap bitmap = context->renderToBitmap(image, &cause);
    if (!bitmap) fail(ExitCode::device, "{}", cause);
    writePicture(bitmap, options.output, type);
    checkValidation(*context);
}

}  // namespace

void addStillCommand(CommandParser& tool) {
    const Command command =
        tool.addCommand("still", "Renders a picture, or one moment of a clip, through effects");
    auto options = std::make_shared<Options>();
    command.option("-i,--input", options->input, "PNG, JPEG or video file; - is a picture on standard input")
        .required();
    command.option("-e,--effect", options->effects, "CLASS:name=value:name=value; repeatable, a chain");
    command.option("-o,--output", options->output, "PNG or JPEG file, or - for PNG on standard output")
        .required();
    command.option("--time", options->time, "Moment of the clip, and the effects' time, seconds");
    command.option("--size", options->size, "Stretch the picture to WIDTHxHEIGHT before the effects");
    options->reading.add(command);
    command.option("--mask", options->mask, kMaskHelp);
    options->overwrite.add(command);
    options->device.add(command);
    command.setAction([options] { still(*options); });
}

}  // namespace qv::host
