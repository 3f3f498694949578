#include <memory>

#include "Host/Clips/MaskSource.h"
#include "Host/Clips/Timeline.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/Listing/PlanListing.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

struct Options {
    std::string effect, size = "1280x720", time, mask;
    std::vector<std::string> settings;
    bool json = false, dot = false, plan = false, gpuWays = false;
};

/// A mask that is white all over.
SubjectMask whiteMask(PixelSize size) {
    const PixelBuffer white = PixelBuffer::create(PixelFormat::gray8, size.width, size.height);
    if (!white) fail(ExitCode::internal, "no memory for a mask of {}x{}", size.width, size.height);
    std::fill_n(white.plane(0).data, white.plane(0).rowBytes * std::size_t(size.height), std::uint8_t(255));
    return SubjectMask::fromBuffer(white);
}

/// Pictures of one colour each, or video frames.
FilterInputs plainInputs(PixelSize size, bool asFrames) {
    const CGSize sides{double(size.width), double(size.height)};
    const auto picture = [&](float grey) {
        if (!asFrames) return MTIImage::initWithColor({grey, grey, grey, 1}, false, sides);
        const PixelBuffer frame = PixelBuffer::create(PixelFormat::i420, size.width, size.height);
        if (!frame) fail(ExitCode::internal, "no memory for a frame of {}x{}", size.width, size.height);
        return MTIImage::imageWithPixelBuffer(frame);
    };
    FilterInputs inputs;
    inputs.first = picture(0.5f);
    inputs.second = picture(0.25f);
    inputs.originalSize = sides;
    return inputs;
}

/// Names for the inputs that a class may show in its graph.
NamedImages namedInputs(const QVFilterClass& filterClass, const FilterInputs& inputs) {
    NamedImages images;
    for (const QVInput& input : filterClass.allInputs()) {
        if (!input.isBuffer)
            images.emplace_back(std::string(input.name), std::get<MTIImage>(inputs.valueFor(input)));
    }
    return images;
}

void graph(const Options& options) {
    EffectChoice choice = parseEffect(options.effect);
    for (const std::string& setting : options.settings) choice.addSetting(setting);
    ClipPosition clip;
    if (!options.time.empty()) clip.time = parseTime("--time", options.time);

    const PixelSize size = parseSize(options.size);
    FilterInputs inputs = plainInputs(size, options.plan);
    inputs.mask = whiteMask(size);
    if (!options.mask.empty()) {
        const FramePixels frame{.pixels = inputs.mask.buffer};  // any of its shape
        inputs.mask = openMaskSource(options.mask, {}, writeNote)->maskOf(frame, clip.time.value_or(0));
    }
    const auto filter = makeFilterOnClip(choice, clip);
    setInputs(*filter, inputs);
    const MTIImage output = outputImageOf(*filter);
    const NamedImages names = namedInputs(*choice.filterClass, inputs);
    const std::string title(choice.filterClass->name);
    const Json listing =
        options.plan ? planToJSON(output, names, options.gpuWays) : graphToJSON(output, names);
    if (options.json) {
        writeStandardOutput(dump(listing));
    } else if (options.dot) {
        writeStandardOutput(options.plan ? planToDot(listing, title) : graphToDot(listing, title));
    } else {
        writeStandardOutput(options.plan ? planToText(listing) : graphToText(listing));
    }
}

}  // namespace

void addGraphCommand(CommandParser& tool) {
    const Command command = tool.addCommand(
        "graph", "Prints the image graph behind a class's picture of plain inputs; needs no device");
    auto options = std::make_shared<Options>();
    command.option("class", options->effect, "Name of the class, or CLASS:name=value:...").required();
    command.option("--size", options->size, "Size of the inputs").showDefault();
    command.option("--time", options->time, "The effect's time (iTime), seconds");
    command.option("--mask", options->mask,
                   "Picture or video that is white where the subject is; white without");
    command.option("--set", options->settings, "name=value of a property; in order, repeatable")
        .severalValues();
    const CommandOption json = addJSONFlag(command, options->json);
    command.flag("--dot", options->dot, "Print a picture for dot").excludes(json);
    const CommandOption plan =
        command.flag("--plan", options->plan,
                     "Print the passes that are drawn of video frames, and why they are not fewer");
    command.flag("--gpu", options->gpuWays, "With --plan: as on a GPU, not as on a processor").needs(plan);
    command.setAction([options] { graph(*options); });
}

}  // namespace qv::host
