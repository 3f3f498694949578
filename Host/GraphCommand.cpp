#include <memory>

#include "Host/CommandLine.h"
#include "Host/PlanListing.h"
#include "Host/Timeline.h"

namespace qv::host {

namespace {

struct Options {
    std::string effect, size = "1280x720", time;
    std::vector<std::string> settings;
    bool json = false, dot = false, plan = false, gpuWays = false;
};

/// Pictures of one colour each, or video frames; a class that reads its mask from memory finds it white.
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
    const PixelBuffer white = PixelBuffer::create(PixelFormat::gray8, size.width, size.height);
    if (!white) fail(ExitCode::internal, "no memory for a mask of {}x{}", size.width, size.height);
    std::fill_n(white.plane(0).data, white.plane(0).rowBytes * std::size_t(size.height), std::uint8_t(255));
    inputs.mask = SubjectMask::fromBuffer(white);
    inputs.originalSize = sides;
    return inputs;
}

/// Names for the inputs that a class may show in its graph.
NamedImages namedInputs(const QVFilterClass& filterClass, const FilterInputs& inputs) {
    const std::vector<std::string_view> names = inputNames(filterClass);
    const bool two = filterClass.inputsOrInherited() == QVFilterInputs::two;
    return {{std::string(names[0]), inputs.first},
            {two ? std::string(names[1]) : "secondImage", inputs.second},
            {"maskImage", inputs.mask.image}};
}

void graph(const Options& options) {
    EffectChoice choice = parseEffect(options.effect);
    for (const std::string& setting : options.settings) choice.addSetting(setting);
    ClipPosition clip;
    if (!options.time.empty()) clip.time = parseTime("--time", options.time);

    const FilterInputs inputs = plainInputs(parseSize(options.size), options.plan);
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

void addGraphCommand(CLI::App& tool) {
    CLI::App* command = tool.add_subcommand(
        "graph", "Prints the image graph behind a class's picture of plain inputs; needs no device");
    auto options = std::make_shared<Options>();
    command->add_option("class", options->effect, "Name of the class, or CLASS:name=value:...")->required();
    command->add_option("--size", options->size, "Size of the inputs")->capture_default_str();
    command->add_option("--time", options->time, "The effect's time (iTime), seconds");
    command->add_option("--set", options->settings, "name=value of a property; in order, repeatable")
        ->allow_extra_args(true);
    CLI::Option* json = addJSONFlag(*command, options->json);
    command->add_flag("--dot", options->dot, "Print a picture for dot")->excludes(json);
    CLI::Option* plan =
        command->add_flag("--plan", options->plan,
                          "Print the passes that are drawn of video frames, and why they are not fewer");
    command->add_flag("--gpu", options->gpuWays, "With --plan: as on a GPU, not as on a processor")
        ->needs(plan);
    command->callback([options] { graph(*options); });
}

}  // namespace qv::host
